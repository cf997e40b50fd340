// SPDX-License-Identifier: MIT
#include "device/process_stat.h"

#include "core/log.h"
#include "core/open_file.h"
#include "core/scanner.h"

#include <bit>
#include <charconv>
#include <cstring>

namespace {

constexpr char log_tag[] = "libvexa_proc";
constexpr size_t cmdline_size = 1024;
constexpr unsigned long bytes_of_kib = 1024;

} // namespace

process_path::process_path(int32_t pid, std::string_view entry)
{
    char *end = std::to_chars(text, text + 12, pid).ptr; // a sign and ten digits
    *end++ = '/';
    memcpy(end, entry.data(), entry.size());
    end[entry.size()] = '\0';
}

unsigned page_shift()
{
    const long size = sysconf(_SC_PAGESIZE);
    return size >= long{bytes_of_kib} ? unsigned(std::bit_width(static_cast<unsigned long>(size) / bytes_of_kib)) - 1
                                      : 0;
}

// A name may hold parentheses, blanks and line feeds: the last ")" of the text ends it.
bool parse_process_stat(std::string_view text, unsigned shift, process_stat &out)
{
    const size_t close = text.rfind(')');
    const size_t open = text.find('(');
    if (close == text.npos || open > close || text.size() - close - 1 < 2)
        return false;
    out.comm = {text.data() + open + 1, close - open - 1};
    scanner fields{{text.data() + close + 2, text.size() - close - 2}};
    long ppid = 0, pages = 0;
    unsigned long bytes = 0;
    // process group, session, terminal and its group; flags, faults and times; priority to start time
    if (!fields.character(out.state) || !fields.signed_number(ppid) || !fields.skip_numbers<10>(18) ||
        !fields.decimal(bytes) || !fields.signed_number(pages))
        return false;
    out.ppid = int32_t(ppid);
    out.vsz = bytes / bytes_of_kib;
    out.rss = long(static_cast<unsigned long>(pages) << shift);
    return true;
}

unique_text fread_cmdline(int proc, int32_t pid)
{
    const unique_fd fd = open_descriptor(process_path{pid, "cmdline"}.text, proc);
    if (!fd) {
        log_err("Failed to open '/proc/%d/cmdline': %s", int(pid), strerror(errno));
        return nullptr;
    }
    char words[cmdline_size];
    const ssize_t got = read(fd.get(), words, sizeof words);
    if (got < 0)
        log_err("Failed to read '/proc/%d/cmdline'", int(pid));
    if (got <= 0)
        return nullptr;
    const auto last = size_t(got) - 1;
    words[last] = '\0';
    for (char *zero = words; (zero = static_cast<char *>(memchr(zero, '\0', size_t(words + last - zero))));)
        *zero = ' ';
    return unique_text{strndup(words, last)};
}
