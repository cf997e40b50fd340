// SPDX-License-Identifier: MIT
#include "tests/support/device.h"

#include <ctime>

TEST(uptime2str, leaves_out_what_is_zero)
{
    const std::pair<unsigned long, const char *> rows[] = {
        {0, ""}, {59, "59s"}, {3600, "1h"}, {90061, "1d1h1m1s"}, {86400 * 400, "400d"}, {60, "1m"}};
    for (const auto &[seconds, expected] : rows) {
        char text[32];
        EXPECT_EQ(uptime2str(seconds, text, sizeof text), 0);
        EXPECT_STREQ(text, expected);
    }
    char text[32];
    EXPECT_EQ(uptime2str(ULONG_MAX, text, sizeof text), 0);
    EXPECT_STREQ(text, "213503982334601d7h15s");
    EXPECT_EQ(uptime2str(90061, text, 5), -1);
    EXPECT_STREQ(text, "1d1h");
    EXPECT_EQ(uptime2str(90061, text, 0), -1);
}
