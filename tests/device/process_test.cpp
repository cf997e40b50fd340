// SPDX-License-Identifier: MIT
#include "tests/device/process.h"
#include "tests/support/captured_log.h"
#include "tests/support/failing_memory.h"

#include <sstream>
#include <sys/wait.h>
#include <unistd.h>

namespace {

constexpr int32_t pid = 4242; // a process of the device's own /proc
const std::string folder = "/proc/4242/";
const std::string fields = " 1 2 3 4 5 6 7 8 9 10 11 12 13 14 15 16 17 18 8192 3 ignored\n"; // behind state and parent

void put_stat(const std::string &text)
{
    the_device.put(folder + "stat", text);
    the_device.put(folder + "cmdline", "");
}

void put_links(const std::vector<std::string> &targets)
{
    put_stat("4242 (p) S 1" + fields);
    the_device.put(folder + "fd/none", "");
    the_device.remove(folder + "fd/none");
    for (size_t i = 0; i < targets.size(); i++)
        EXPECT_EQ(symlink(targets[i].c_str(), (folder + "fd/" + std::to_string(i)).c_str()), 0);
}

void put_tables(const std::string &unix_lines, const std::string &ip_lines)
{
    for (const char *file : {"tcp", "tcp6", "udp", "udp6"})
        the_device.put(std::string("/proc/net/") + file, "heading\n");
    the_device.put("/proc/net/unix", "heading\n" + unix_lines);
    the_device.put("/proc/net/tcp", "heading\n" + ip_lines);
}

std::string descriptors()
{
    const json_document found = process(pid);
    std::string text;
    for (size_t i = json_array_size(json_object_get(found.get(), "fds")); i-- > 0;)
        text += text_of(json_array_get(json_object_get(found.get(), "fds"), i)) + "\n";
    return text;
}

} // namespace

TEST(vexa_ps_filter, takes_a_process_by_its_line)
{
    const auto shown = [](const std::string &comm, const char *parent) {
        return R"({"pid":4242,"ppid":)" + std::string(parent) +
               R"(,"vsz":8,"rss":12,"stat":"S","fd_count":-1,"comm":)" + comm + R"(,"fds":[]})";
    };
    const struct {
        const char *why;
        std::string stat, found;
    } rows[] = {
        {"the last parenthesis ends the name", "4242 (a) S (b)) S 7" + fields, shown("\"a) S (b)\"", "7")},
        {"a line feed is part of it", "4242 (a\n(b) S 7" + fields, shown(R"("a\n(b")", "7")},
        {"bytes that are no UTF-8", "4242 (a\xff\xc3(\xc3\xa4\xed\xa0\x80) S 7" + fields,
         shown("\"a\ufffd\ufffd(ä\ufffd\ufffd\ufffd\"", "7")},
        {"blanks do not matter", "4242 () S\t  -7" + fields, shown(R"("")", "-7")},
        {"no name", "4242 p S 1" + fields, "(none)"},
        {"no beginning of the name", "4242 p) S (1" + fields, "(none)"},
        {"nothing behind the name", "4242 (p) ", "(none)"},
        {"a field is missing", "4242 (p) S 1 1 2 3 4 5 6 7 8 9 10 11 12 13 14 15 16 17 18 8192", "(none)"},
        {"a field is no number", "4242 (p) S 1 1 2 3 4 5 x 7 8 9 10 11 12 13 14 15 16 17 18 8192 3", "(none)"},
        {"empty", "", "(none)"},
        {"more than is read", "4242 (p" + std::string(1015, 'x') + ") S 1" + fields, "(none)"},
    };
    for (const auto &row : rows) {
        SCOPED_TRACE(row.why);
        put_stat(row.stat);
        EXPECT_EQ(text_of(process(pid, false).get()), row.found);
    }
}

TEST(vexa_ps_filter, joins_the_command_line_and_counts_descriptors)
{
    put_links({"/a", "/b", "/c"});
    the_device.put(folder + "cmdline", std::string("a\0b c\0\0d\0", 9));
    the_device.put("/proc/17/stat", "17 (kept) R 1" + fields);
    the_device.put("/proc/0/stat", "0 (no process) R 1" + fields);
    const captured_log log{8};
    const std::unique_ptr<vexa_ps_list, decltype(&vexa_ps_list_free)> list{vexa_ps(), vexa_ps_list_free};
    EXPECT_EQ(log.text(), "[error] libvexa_proc.fread_cmdline(): Failed to open '/proc/17/cmdline': No such file or "
                          "directory\n");
    ASSERT_EQ(list->count, 2u);
    EXPECT_EQ(list->sockets, nullptr);
    int sum = 0;
    for (const vexa_list *link = list->entries.next; link != &list->entries; link = link->next) {
        const auto *entry = reinterpret_cast<const vexa_ps_entry *>(link);
        sum += entry->fd_count;
        EXPECT_EQ(entry->fds.next, &entry->fds);
        EXPECT_STREQ(entry->cmdline, entry->pid == pid ? "a b c  d" : nullptr);
    }
    EXPECT_EQ(sum, 3 - 1);
}

TEST(vexa_fds_to_array, tells_kinds_of_descriptors_apart)
{
    put_tables("", "");
    const std::string longest(385, 'x');
    put_links({"/tmp/a [7] (deleted)", "pipe:[12]", "anon_inode:[eventfd]", "anon_inode:[5]", "socket:[99]",
               "net:[4026531840]", "pipe:[x]", "/\xff", longest, longest + "y"});
    const captured_log log;
    std::string expected;
    for (const auto &[type, link] : {std::pair{"file", std::string("/tmp/a [7] (deleted)")},
                                     {"pipe", "pipe:[12]"},
                                     {"file", "anon_inode:[eventfd]"},
                                     {"anon", "anon_inode:[5]"},
                                     {"socket", ""},
                                     {"file", "pipe:[x]"},
                                     {"file", "/\ufffd"},
                                     {"file", longest}})
        expected += std::string(R"({"fd_type":")") + type + (link.empty() ? "" : R"(","link":")" + link) + "\"}\n";
    const std::string found = descriptors();
    std::vector<std::string> lines[2]; // the kernel lists the entries as it likes
    for (int i = 0; i < 2; i++) {
        std::istringstream in{i ? expected : found};
        for (std::string line; std::getline(in, line);)
            lines[i].push_back(line);
    }
    EXPECT_THAT(lines[0], testing::UnorderedElementsAreArray(lines[1]));
    EXPECT_THAT(log.text(), testing::HasSubstr("[warn ] libvexa_proc.add_descriptor(): Unknown FD type "
                                               "'net:[4026531840]'\n"));
    EXPECT_THAT(log.text(), testing::HasSubstr("[debug] libvexa_proc.resolve_fd_path(): Resolved path truncated "
                                               "'/proc/4242/fd/9 ->  " +
                                               longest + "'\n"));
}

TEST(vexa_fds_to_array, shows_what_the_tables_say_of_a_socket)
{
    const std::string rest = " 00000000:00000000 00:00000000 00000000     0        0 55 1 ffff 100\n";
    const auto ip = [&](const char *state, const char *remote) {
        return "   0: 0100007F:1F90 00000000:" + std::string(remote) + " " + state + rest;
    };
    const auto unix_line = [](const char *flags, const char *type, const char *state, const char *path) {
        return std::string("ffff888: 00000002 00000000 ") + flags + " " + type + " " + state + " 55" + path + "\n";
    };
    const auto shown = [](const std::string &kind, const std::string &socket) {
        return R"({"fd_type":"socket","socket_type":")" + kind + R"(","socket":{)" + socket + "}}\n";
    };
    const auto ports = [](const char *remote, const char *state) {
        return R"("local_port":8080,"remote_port":)" + std::string(remote) + R"(,"state":")" + state + '"';
    };
    const std::string listening = R"("refcnt":2,"type":"STREAM","path":"@x","state":"LISTENING")";
    const std::string none = "{\"fd_type\":\"socket\"}\n";
    const struct {
        const char *why, *file;
        std::string line, found;
    } rows[] = {
        {"listening", "tcp", ip("0A", "0000"), shown("tcp", ports("\"*\"", "LISTEN"))},
        {"the last state", "tcp6", ip("0C", "0001"), shown("tcp6", ports("1", "NEW_SYN_RECV"))},
        {"a state beyond", "tcp", ip("0D", "FFFF"), shown("tcp", ports("65535", "UNKNOWN"))},
        {"UDP does not listen", "udp", ip("0A", "0000"), shown("udp", ports("\"*\"", "UNKNOWN"))},
        {"UDP closed", "udp6", ip("07", "0000"), shown("udp6", ports("\"*\"", "CLOSE"))},
        {"a cut line", "tcp", ip("0A", "0000").substr(0, 90), none},
        {"a line in pieces", "tcp", std::string(200, ' ') + ip("0A", "0000"), none},
        {"listening", "unix", unix_line("00010000", "0001", "01", " @x"), shown("unix", listening)},
        {"without a path", "unix", unix_line("00000000", "0002", "01", ""),
         shown("unix", R"("refcnt":2,"type":"DGRAM","state":"UNCONNECTED")")},
        {"to the first blank", "unix", unix_line("0", "5", "03", " /a b"),
         shown("unix", R"("refcnt":2,"type":"SEQPACKET","path":"/a","state":"CONNECTED")")},
        {"free, a type beyond", "unix", unix_line("00010000", "6", "00", " \xff"),
         shown("unix", "\"refcnt\":2,\"type\":\"UNKNOWN\",\"path\":\"\ufffd\",\"state\":\"UNKNOWN\"")},
        {"the first row holds", "unix", unix_line("0", "1", "2", "") + unix_line("0", "2", "4", ""),
         shown("unix", R"("refcnt":2,"type":"STREAM","state":"CONNECTING")")},
    };
    put_links({"socket:[55]"});
    for (const auto &row : rows) {
        SCOPED_TRACE(row.why);
        put_tables("", "");
        the_device.put(std::string("/proc/net/") + row.file, "heading\n" + row.line);
        EXPECT_EQ(descriptors(), row.found);
    }
    const captured_log log{2};
    put_tables(unix_line("0", "1", "1", ""), ip("0A", "0000"));
    the_device.remove("/proc/net/udp");
    EXPECT_THAT(descriptors(), testing::HasSubstr("unix"));
    EXPECT_EQ(log.text(), "[warn ] libvexa_proc.add_socket(): Duplicate socket inode 55\n[error] libvexa_proc."
                          "parse_sockets(): Failed to open '/proc/net/udp': No such file or directory\n");
}

// Only the table of sockets ends the process when it has no memory for its buckets; anything else is left out, and
// nothing leaks.
TEST(vexa_ps_filter, survives_without_memory)
{
    put_links({"/a", "pipe:[1]", "socket:[55]"});
    put_tables("f: 2 0 0 1 1 55 /path\n", "");
    const captured_log quiet{0};
    int endings = 0, failures = 0;
    for (size_t after = 0; after < 100; after++) {
        const auto ask = [after] {
            const failing_memory no_memory{after, 1};
            json_decref(vexa_ps_list_to_array(vexa_ps_filter(1, nullptr, nullptr)));
        };
        const pid_t child = fork();
        if (child == 0) {
            ask();
            _exit(0);
        }
        int status = 0;
        waitpid(child, &status, 0);
        ASSERT_TRUE(WIFEXITED(status)) << after;
        const bool ended = WEXITSTATUS(status) == 255;
        endings += ended;
        if (!ended)
            ask();
        failures += failing_memory::has_failed();
    }
    EXPECT_EQ(endings, 2) << "the table and its buckets";
    EXPECT_GT(failures, 30);
    EXPECT_LT(failures, 98) << "not each point was reached";
    the_device.remove("/proc/net/unix");
    EXPECT_EQ(text_of(json_document{vexa_ps_list_to_array(nullptr)}.get()), "[]");
}
