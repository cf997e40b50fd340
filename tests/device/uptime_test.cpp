// SPDX-License-Identifier: MIT
#include "tests/support/device.h"

TEST(uptime2str, leaves_out_what_is_zero)
{
    const auto shown = [](unsigned long seconds, size_t size = 32) {
        char text[32] = "";
        const int result = uptime2str(seconds, text, size);
        return (result == 0 ? "" : "cut: ") + std::string(text);
    };
    EXPECT_EQ(shown(0), "");
    EXPECT_EQ(shown(3660), "1h1m");
    EXPECT_EQ(shown(ULONG_MAX), "213503982334601d7h15s");
    EXPECT_EQ(shown(90061, 9), "1d1h1m1s");
    EXPECT_EQ(shown(90061, 5), "cut: 1d1h");
    EXPECT_EQ(shown(90061, 0), "cut: ");
}
