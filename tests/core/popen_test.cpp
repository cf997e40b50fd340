// SPDX-License-Identifier: MIT
#include "core/owner.h"
#include "tests/support/captured_log.h"
#include "tests/support/device.h"

#include <sys/resource.h>

TEST(popen_get_output, keeps_what_fits)
{
    const struct {
        const char *why, *command;
        size_t size;
        std::string output;
    } rows[] = {
        {"shorter", "printf 1234", 6, "1234"},
        {"exactly full: the last byte makes room for the zero", "printf 123456", 6, "12345"},
        {"one over", "printf 1234567", 6, "12345"},
        {"nothing", "true", 6, ""},
        {"a buffer of one", "printf 1", 1, ""},
        {"no buffer", "printf 1", 0, ""},
        {"standard error goes elsewhere", "echo x >&2; printf 12; exec >&-; echo y >&2", 6, "12"},
        {"bytes", "printf 'a\\000\\377'", 6, std::string("a\0\xff", 3)},
        {"a program that would never end", "exec yes", 6, "y\ny\ny"},
    };
    for (const auto &row : rows) {
        SCOPED_TRACE(row.why);
        const captured_log log;
        std::string buf(10, '#');
        ASSERT_EQ(popen_get_output(row.command, buf.data(), row.size), int(row.output.size()));
        EXPECT_EQ(buf, row.size ? row.output + '\0' + buf.substr(row.output.size() + 1) : std::string(10, '#'));
        EXPECT_EQ(buf.substr(row.size), std::string(10 - row.size, '#'));
    }
}

TEST(popen_alloc_output, grows_up_to_its_limit)
{
    const struct {
        const char *command;
        size_t max, length;
    } rows[] = {
        {"printf %5000d 1", 3000, 2999}, {"printf %5000d 1", 100, 99},    {"printf %1024d 1", 1024, 1023},
        {"printf %1024d 1", 9000, 1024}, {"printf %5000d 1", 9000, 5000}, {"printf ''", 9000, 0},
    };
    for (const auto &row : rows) {
        SCOPED_TRACE(row.command);
        const captured_log log;
        const unique_text text{popen_alloc_output(row.command, row.max)};
        ASSERT_TRUE(text);
        EXPECT_EQ(std::string(text.get()).size(), row.length);
    }
    EXPECT_EQ(popen_alloc_output("true", 0), nullptr);
}

TEST(popen_get_output, tells_how_commands_ended)
{
    const captured_log log;
    char buf[10];
    popen_get_output("exit 3", buf, sizeof buf);
    free(popen_alloc_output("kill -9 $$", 10));
    const rlimit none{0, 100};
    setrlimit(RLIMIT_NOFILE, &none);
    EXPECT_EQ(popen_get_output("true", buf, sizeof buf), -1);
    EXPECT_EQ(popen_alloc_output("true", 10), nullptr);
    const rlimit some{100, 100};
    setrlimit(RLIMIT_NOFILE, &some);
    EXPECT_EQ(log.text(), "[warn ] libvexa_exec.popen_get_output(): [exit 3] -> [768]\n"
                          "[warn ] libvexa_exec.popen_alloc_output(): 'kill -9 $$' returned rc=9\n"
                          "[error] libvexa_exec.popen_get_output(): get_output: popen[true] -> NULL\n"
                          "[error] libvexa_exec.popen_alloc_output(): open failed on 'true': Too many open files\n");
}
