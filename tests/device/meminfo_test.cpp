// SPDX-License-Identifier: MIT
#include "tests/support/captured_log.h"
#include "tests/support/device.h"

#include <sys/sysinfo.h>

TEST(meminfo, reads_the_counters_it_knows)
{
    vexa_meminfo m;
    ASSERT_EQ(meminfo(&m), 0);
    EXPECT_GT(std::min(m.mem_total, m.committed_as), 1000U) << "of the real kernel";
    EXPECT_TRUE(0.0 < m.used_percent && m.used_percent < 100.0);
    const struct {
        const char *why, *file;
        uint64_t total, available, active_anon;
        double percent;
    } rows[] = {
        {"a quarter is available", "MemTotal: 1000 kB\nMemAvailable:\t250 kB\nActive(anon): 7", 1000, 250, 7, 75.0},
        {"without a total there is no share", "MemAvailable: 250 kB\n", 0, 250, 0, 0.0},
        {"more than all", "MemTotal: 1000 kB\nMemAvailable: 1500 kB\n", 1000, 1500, 0, -50.0},
        {"a key is a whole one", "MemTotals: 1 kB\n MemTotal: 2 kB\nActive: 3 kB\nMemTotal: 4x\n", 4, 0, 0, 100.0},
        {"no digits, and a sign", "MemTotal: kB\nMemAvailable: +7", 0, 7, 0, 0.0},
        // 31 characters, then the rest as a line of its own
        {"pieces", "0123456789012345678901234567890MemTotal: 5\nMemTotal:                     1234567\n", 1, 0, 0,
         100.0},
    };
    const captured_log log;
    for (const auto &row : rows) {
        EXPECT_EQ(log.text(), "");
        the_device.put("/proc/meminfo", row.file);
        ASSERT_EQ(meminfo(&m), 0);
        EXPECT_EQ(std::tuple(m.mem_total, m.mem_available, m.active_anon, m.used_percent),
                  std::tuple(row.total, row.available, row.active_anon, row.percent))
            << row.why;
    }
    the_device.remove("/proc/meminfo");
    EXPECT_EQ(meminfo(&m), -1);
    EXPECT_EQ(m.mem_total, 1U) << "untouched";
    EXPECT_EQ(log.text(),
              "[error] libvexa_proc.meminfo(): No colon found\n"
              "[error] libvexa_proc.meminfo(): No colon found\n"
              "[error] libvexa_proc.meminfo(): Failed to open '/proc/meminfo': No such file or directory\n");
}

TEST(get_memused_percent, is_of_the_callers_record)
{
    struct sysinfo si {};
    si.totalram = 3;
    si.freeram = 2;
    EXPECT_EQ(get_memused_percent(&si), float(100.0 / 3));
}
