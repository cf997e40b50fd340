// SPDX-License-Identifier: MIT
#include "tests/support/captured_log.h"
#include "tests/support/device.h"

#include <sys/sysinfo.h>

namespace {

// Total, available, anonymous and active, share in use.
using counters = std::tuple<uint64_t, uint64_t, uint64_t, double>;

counters told(const char *file)
{
    vexa_meminfo m;
    the_device.put("/proc/meminfo", file);
    EXPECT_EQ(meminfo(&m), 0);
    return {m.mem_total, m.mem_available, m.active_anon, m.used_percent};
}

} // namespace

TEST(meminfo, reads_the_counters_it_knows)
{
    vexa_meminfo m;
    ASSERT_EQ(meminfo(&m), 0);
    EXPECT_GT(std::min(m.mem_total, m.committed_as), 1000U) << "of the real kernel";
    EXPECT_TRUE(0.0 < m.used_percent && m.used_percent < 100.0);
    const captured_log log;
    EXPECT_EQ(told("MemTotal: 1000 kB\nMemAvailable:\t250 kB\nActive(anon): 7"), counters(1000, 250, 7, 75));
    EXPECT_EQ(told("MemAvailable: 250 kB\n"), counters(0, 250, 0, 0)) << "no share without a total";
    EXPECT_EQ(told("MemTotal: 1000 kB\nMemAvailable: 1500 kB\n"), counters(1000, 1500, 0, -50));
    EXPECT_EQ(told("MemTotals: 1 kB\n MemTotal: 2 kB\nActive: 3 kB\nMemTotal: 4x\n"), counters(4, 0, 0, 100));
    EXPECT_EQ(told("MemTotal: kB\nMemAvailable: +7"), counters(0, 7, 0, 0)) << "no digits, and a sign";
    EXPECT_EQ(log.text(), "");
    EXPECT_EQ(told("0123456789012345678901234567890MemTotal: 5\nMemTotal:                     1234567\n"),
              counters(1, 0, 0, 100))
        << "31 characters, then the rest as a line of its own";
    struct sysinfo si {};
    si.totalram = 3;
    si.freeram = 2;
    EXPECT_EQ(get_memused_percent(&si), float(100.0 / 3)) << "of the caller's record";

    the_device.remove("/proc/meminfo");
    const uint64_t before = m.mem_total;
    EXPECT_EQ(meminfo(&m), -1);
    EXPECT_EQ(m.mem_total, before);
    std::string complaints;
    for (int i = 0; i < 4; i++) // of two pieces, twice
        complaints += "[error] libvexa_proc.meminfo(): No colon found\n";
    EXPECT_EQ(log.text(), complaints +
                              "[error] libvexa_proc.meminfo(): Failed to open '/proc/meminfo': No such file or "
                              "directory\n");
}
