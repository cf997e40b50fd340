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

TEST(get_uptime, takes_the_whole_seconds)
{
    constexpr std::pair<const char *, long> rows[] = {
        {"12345.67 9.1\n", 12345}, {"7\n", 7}, {"-3.5\n", -3}, {"x\n", -1}, {"", -1}};
    for (const auto &[file, expected] : rows) {
        the_device.put("/proc/uptime", file);
        EXPECT_EQ(get_uptime_from_proc(), expected) << file;
    }
    EXPECT_EQ(get_uptime_from_file("/tmp/missing"), -1);
    timespec now{};
    clock_gettime(CLOCK_BOOTTIME, &now);
    EXPECT_NEAR(double(get_uptime_from_sysinfo()), double(now.tv_sec), 2);
}

TEST(get_system_time, is_the_calendar_text_in_fields)
{
    char fields[7][8];
    char text[26], stamp[20];
    time_t now;
    do { // until no second passes between
        now = time(nullptr);
        ASSERT_EQ(get_system_time(fields), 0);
        ASSERT_EQ(get_system_time_str(stamp, sizeof stamp), 0);
    } while (time(nullptr) != now);
    ctime_r(&now, text);
    const std::string joined = std::string(fields[0]) + " " + fields[1] + (strlen(fields[2]) == 1 ? "  " : " ") +
                               fields[2] + " " + fields[3] + ":" + fields[4] + ":" + fields[5] + " " + fields[6];
    EXPECT_EQ(joined, text);
    tm local{};
    char expected[20];
    strftime(expected, sizeof expected, "%Y-%m-%dT%H:%M:%S", localtime_r(&now, &local));
    EXPECT_STREQ(stamp, expected);
    EXPECT_EQ(get_system_time_str(stamp, 19), -1);
    EXPECT_STREQ(stamp, "");
    EXPECT_EQ(get_system_time_str(stamp, 0), -1);
}
