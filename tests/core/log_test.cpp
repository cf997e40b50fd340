// SPDX-License-Identifier: MIT
#include "tests/support/captured_log.h"
#include "tests/support/device.h"

#include <syslog.h>

TEST(libvexa_log, names_the_priority_on_standard_error_by_its_low_three_bits)
{
    const struct {
        const char *why;
        int priority;
        const char *line;
    } rows[] = {
        {"all names are five characters wide", LOG_WARNING, "[warn ] cfg.parse(): x 1\n"},
        {"a priority beyond the table", 8 + LOG_ERR, "[error] cfg.parse(): x 1\n"},
        {"a negative one", -1, "[debug] cfg.parse(): x 1\n"},
    };
    for (const auto &row : rows) {
        SCOPED_TRACE(row.why);
        const captured_log log;
        libvexa_log(row.priority, "cfg", "parse", "%s %d", "x", 1);
        EXPECT_EQ(log.text(), row.line);
    }
}
