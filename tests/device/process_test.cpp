// SPDX-License-Identifier: MIT
#include "tests/device/process.h"
#include "tests/support/captured_log.h"
#include "tests/support/failing_memory.h"

#include <sys/wait.h>
#include <unistd.h>

namespace {

constexpr int32_t pid = 4242; // a process of the device's own /proc
const std::string folder = "/proc/4242/";
const std::string fields = " 1 2 3 4 5 6 7 8 9 10 11 12 13 14 15 16 17 18 8192 3 ignored\n"; // behind state and parent

void put_links(const std::vector<std::string> &targets)
{
    the_device.put(folder + "stat", "4242 (p) S 1" + fields);
    the_device.put(folder + "cmdline", "");
    the_device.put(folder + "fd/none", "");
    the_device.remove(folder + "fd/none");
    for (size_t i = 0; i < targets.size(); i++)
        EXPECT_EQ(symlink(targets[i].c_str(), (folder + "fd/" + std::to_string(i)).c_str()), 0);
}

void put_table(const std::string &name, const std::string &lines)
{
    for (const char *other : {"unix", "tcp", "tcp6", "udp", "udp6"})
        the_device.put(std::string("/proc/net/") + other, "heading\n");
    the_device.put("/proc/net/" + name, "heading\n" + lines);
}

} // namespace

TEST(vexa_ps_filter, takes_a_process_by_its_line)
{
    const auto shown = [](const std::string &stat) {
        the_device.put(folder + "stat", stat);
        return text_of(process(pid, false).get());
    };
    the_device.put(folder + "cmdline", "");
    EXPECT_EQ(shown("4242 (a\n) S (b c) S 7" + fields),
              R"({"pid":4242,"ppid":7,"vsz":8,"rss":12,"stat":"S","fd_count":-1,"comm":"a\n) S (b c","fds":[]})");
    EXPECT_THAT(shown("4242 (\xff\xc3(\xc3\xa4\xed\xa0\x80) S\t  -7" + fields),
                testing::HasSubstr("\"comm\":\"\ufffd\ufffd(ä\ufffd\ufffd\ufffd\""));
    const std::string broken[] = {
        "",
        "4242 p S 1" + fields,
        "4242 p) S (1" + fields,
        "4242 (p) ",
        "4242 (p) S 1 1 2 3 4 5 6 7 8 9 10 11 12 13 14 15 16 17 18 8192",
        "4242 (p) S 1 1 2 3 4 5 x 7 8 9 10 11 12 13 14 15 16 17 18 8192 3",
        "4242 (p" + std::string(1015, 'x') + ") S 1" + fields, // more than is read
    };
    for (const std::string &stat : broken)
        EXPECT_EQ(shown(stat), "(none)") << stat;
}

TEST(vexa_ps, joins_the_command_line_and_counts_descriptors)
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
    for (const vexa_list *link = list->entries.next; link != &list->entries; link = link->next) {
        const auto *entry = reinterpret_cast<const vexa_ps_entry *>(link);
        EXPECT_EQ(entry->fd_count, entry->pid == pid ? 3 : -1);
        EXPECT_STREQ(entry->cmdline, entry->pid == pid ? "a b c  d" : nullptr);
    }
}

TEST(vexa_fds_to_array, tells_kinds_of_descriptors_apart)
{
    put_table("unix", "");
    const std::string longest(385, 'x');
    put_links({"/tmp/a [7] (deleted)", "pipe:[12]", "anon_inode:[eventfd]", "anon_inode:[5]", "socket:[99]",
               "net:[4026531840]", "pipe:[x]", "/\xff", longest, longest + "y"});
    const captured_log log;
    std::vector<std::string> found; // the kernel lists the entries as it likes
    const json_ref holder = process(pid);
    const json_t *fds = json_object_get(holder.get(), "fds");
    for (size_t i = 0; i < json_array_size(fds); i++) {
        const char *type = nullptr, *link = "";
        json_unpack(json_array_get(fds, i), "{s:s, s?s}", "fd_type", &type, "link", &link);
        found.push_back(std::string(type) + ": " + link);
    }
    EXPECT_THAT(found, testing::UnorderedElementsAre(
                           "file: /tmp/a [7] (deleted)", "pipe: pipe:[12]", "file: anon_inode:[eventfd]",
                           "anon: anon_inode:[5]", "socket: ", "file: pipe:[x]", "file: /\ufffd", "file: " + longest));
    EXPECT_THAT(log.text(), testing::HasSubstr("[warn ] libvexa_proc.add_descriptor(): Unknown FD type "
                                               "'net:[4026531840]'\n"));
    EXPECT_THAT(log.text(), testing::HasSubstr("[debug] libvexa_proc.resolve_fd_path(): Resolved path truncated "
                                               "'/proc/4242/fd/9 ->  " +
                                               longest + "'\n"));
}

TEST(vexa_fds_to_array, shows_what_the_tables_say_of_a_socket)
{
    const auto ip = [](const char *remote, const char *state) {
        return "   0: 0100007F:1F90 00000000:" + std::string(remote) + " " + state +
               " 00000000:00000000 00:00000000 00000000     0        0 55 1 ffff 100\n";
    };
    const auto local = [](const char *text) { return std::string("ffff888: 00000002 00000000 ") + text + "\n"; };
    // in short; the whole document is below
    const auto shown = [](const char *table, const std::string &lines) {
        put_table(table, lines);
        const json_ref found = process(pid);
        const json_t *socket = json_object_get(json_array_get(json_object_get(found.get(), "fds"), 0), "socket");
        std::string text;
        EXPECT_TRUE(!socket || member(found, "fds").find("\"" + std::string(table) + "\"") != std::string::npos);
        for (const char *key : {"local_port", "remote_port", "type", "path", "state"})
            if (const json_t *value = json_object_get(socket, key))
                text += text_of(value) + " ";
        return text;
    };
    put_links({"socket:[55]"});
    EXPECT_EQ(shown("tcp", ip("0000", "0A")), R"(8080 "*" "LISTEN" )");
    EXPECT_EQ(shown("tcp6", ip("0001", "0C")), R"(8080 1 "NEW_SYN_RECV" )");
    EXPECT_EQ(shown("tcp", ip("FFFF", "0D")), R"(8080 65535 "UNKNOWN" )") << "a state beyond";
    EXPECT_EQ(shown("udp", ip("0000", "0A")), R"(8080 "*" "UNKNOWN" )") << "UDP does not listen";
    EXPECT_EQ(shown("udp6", ip("0000", "07")), R"(8080 "*" "CLOSE" )");
    EXPECT_EQ(shown("tcp", ip("0000", "0A").substr(0, 90)), "") << "a cut line";
    EXPECT_EQ(shown("tcp", std::string(200, ' ') + ip("0000", "0A")), "") << "a line in pieces";
    EXPECT_EQ(shown("unix", local("00010000 0001 01 55 @x")), R"("STREAM" "@x" "LISTENING" )");
    EXPECT_EQ(shown("unix", local("00000000 0002 01 55")), R"("DGRAM" "UNCONNECTED" )");
    EXPECT_EQ(shown("unix", local("0 5 03 55 /a b")), R"("SEQPACKET" "/a" "CONNECTED" )") << "to the first blank";
    EXPECT_EQ(shown("unix", local("00010000 6 00 55 \xff")), "\"UNKNOWN\" \"\ufffd\" \"UNKNOWN\" ");
    EXPECT_EQ(shown("unix", local("0 1 2 55") + local("0 2 4 55")), R"("STREAM" "CONNECTING" )") << "the first holds";
    const captured_log log{2};
    the_device.put("/proc/net/tcp", "heading\n" + ip("0000", "0A"));
    the_device.remove("/proc/net/udp");
    EXPECT_EQ(member(process(pid), "fds"), R"([{"fd_type":"socket","socket_type":"unix","socket":)"
                                           R"({"refcnt":2,"type":"STREAM","state":"CONNECTING"}}])");
    EXPECT_EQ(log.text(), "[warn ] libvexa_proc.add_socket(): Duplicate socket inode 55\n"
                          "[warn ] libvexa_proc.add_socket(): Duplicate socket inode 55\n[error] libvexa_proc."
                          "parse_sockets(): Failed to open '/proc/net/udp': No such file or directory\n");
}

// Only the table of sockets ends the process when it has no memory for its buckets; anything else is left out, and
// nothing leaks.
TEST(vexa_ps_filter, survives_without_memory)
{
    put_links({"/a", "pipe:[1]", "socket:[55]"});
    put_table("unix", "f: 2 0 0 1 1 55 /path\n");
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
        if (WEXITSTATUS(status) == 255)
            endings++;
        else
            ask(); // here, where leaks are found
        failures += failing_memory::has_failed();
    }
    EXPECT_EQ(endings, 2) << "the table and its buckets";
    EXPECT_GT(failures, 30);
    EXPECT_LT(failures, 98) << "not each point was reached";
    EXPECT_EQ(text_of(json_ref{vexa_ps_list_to_array(nullptr)}.get()), "[]");
}
