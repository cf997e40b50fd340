// SPDX-License-Identifier: MIT
#include "core/log.h"

#include "core/open_file.h"
#include "core/owner.h"
#include "core/paths.h"

#include <algorithm>
#include <cstdarg>
#include <cstring>
#include <fcntl.h>
#include <sys/stat.h>

extern "C" {
uint32_t libvexa_log_level = 4;
int32_t libvexa_log_use_syslog = 1;
const char *const libvexa_log_level_names[8] = {
    "emerg", "alert", "crit ", "error", "warn ", "notic", "info ", "debug",
};
}

namespace {

constexpr size_t message_size = 1024;
constexpr int json_line_width = 960;

void log_to_stream(FILE *out, int priority, const char *module, const char *func, const char *format, va_list args)
    VEXA_PRINTF(5, 0);

void log_to_stream(FILE *out, int priority, const char *module, const char *func, const char *format, va_list args)
{
    // one hold of the stream, so that lines of several threads do not mix
    flockfile(out);
    fprintf(out, "%s[%d]: [%s] %s.%s(): ", program_invocation_short_name, getpid(),
            libvexa_log_level_names[priority & 7], module, func);
    vfprintf(out, format, args);
    fputc('\n', out);
    funlockfile(out);
}

unique_file open_kernel_log()
{
    constexpr mode_t anyone = 0666;
    constexpr int flags = O_RDWR | O_CREAT | O_TRUNC | O_CLOEXEC | O_NOFOLLOW | O_NOCTTY;
    return stream_of(unique_fd{open(path_kmsg, flags, anyone)}, "w+");
}

} // namespace

extern "C" void libvexa_log(int priority, const char *module, const char *func, const char *format, ...)
{
    const keep_errno kept;
    va_list args;
    va_start(args, format);
    struct stat messages;
    if (!libvexa_log_use_syslog) {
        log_to_stream(stderr, priority, module, func, format, args);
    } else if (stat(path_log_messages, &messages) == 0) {
        char text[message_size];
        vsnprintf(text, sizeof text, format, args);
        syslog(priority, "%s[%d]: %s.%s(): %s\n", program_invocation_short_name, getpid(), module, func, text);
    } else {
        const unique_file kmsg = open_kernel_log();
        log_to_stream(kmsg ? kmsg.get() : stderr, priority, module, func, format, args);
    }
    va_end(args);
}

extern "C" void libvexa_log_json(int priority, const char *module, const char *func, const json_t *json,
                                 const char *title)
{
    const keep_errno kept;
    const unique_text dump{json ? json_dumps(json, JSON_INDENT(4)) : nullptr};
    if (title)
        libvexa_log(priority, module, func, "JSON - %4s: %s", "", title);
    if (!dump) {
        libvexa_log(priority, module, func, "JSON - %4s: %s", "", "null data");
        return;
    }
    const char *prog = program_invocation_short_name;
    const int prefix =
        snprintf(nullptr, 0, "%s: %s[%d]: %s.%s(): JSON - %4s: ", prog, prog, getpid(), module, func, "");
    // names from the host may leave no room; a chunk of one character still gets to the end
    const auto capacity = size_t(std::max(json_line_width - prefix, 1));

    int number = 1;
    for (const char *line = dump.get(); *line;) {
        const size_t length = strcspn(line, "\n");
        for (size_t at = 0; at == 0 || at < length; at += capacity) {
            const int width = int(std::min(length - at, capacity));
            if (at == 0)
                libvexa_log(priority, module, func, "JSON - %4d: %.*s", number++, width, line);
            else
                libvexa_log(priority, module, func, "JSON - %4s: %.*s", "", width, line + at);
        }
        line += length + (line[length] == '\n');
    }
}

extern "C" void libvexa_log_hex(int priority, const char *module, const char *func, const unsigned char *data, int len,
                                const char *title)
{
    constexpr int bytes_per_line = 16;
    constexpr size_t offset_width = 9; // "%08x:"
    constexpr size_t byte_width = 3;   // " %02x"
    char line[offset_width + byte_width * bytes_per_line + 1];

    libvexa_log(priority, module, func, "%s - HEX(%p) len %d", title ? title : "", static_cast<const void *>(data),
                len);
    if (!data)
        return;
    for (int at = 0; at < len; at += std::min(bytes_per_line, len - at)) {
        char *end = line + snprintf(line, sizeof line, "%08x:", unsigned(at));
        for (int i = at; i < len && i - at < bytes_per_line; i++)
            end += snprintf(end, size_t(line + sizeof line - end), " %02x", data[i]);
        libvexa_log(priority, module, func, "%s", line);
    }
}
