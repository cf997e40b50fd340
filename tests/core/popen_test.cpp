// SPDX-License-Identifier: MIT
#include "tests/support/captured_log.h"
#include "tests/support/device.h"

TEST(popen_get_output, keeps_what_fits)
{
    const struct {
        const char *command;
        std::string output;
    } rows[] = {
        {"printf 123456 # full: the last byte makes room for the zero", "12345"},
        {"printf 12345", "12345"},
        {"true", ""},
        {"echo x >&2; printf 12; exec >&-; echo y >&2", "12"},
        {"printf 'a\\000\\377'", std::string("a\0\xff", 3)},
        {"exec yes # would never end", "y\ny\ny"},
    };
    for (const auto &row : rows) {
        SCOPED_TRACE(row.command);
        const captured_log log;
        std::string buf = "#######";
        ASSERT_EQ(popen_get_output(row.command, buf.data(), 6), int(row.output.size()));
        EXPECT_EQ(buf.substr(0, row.output.size() + 1), row.output + '\0');
        EXPECT_EQ(buf[6], '#');
    }
    EXPECT_EQ(popen_get_output("printf 1", nullptr, 0), 0);
}
