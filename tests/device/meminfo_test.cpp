// SPDX-License-Identifier: MIT
#include "tests/support/captured_log.h"
#include "tests/support/device.h"

#include <jansson.h>
#include <memory>
#include <sys/sysinfo.h>

TEST(meminfo, reads_the_counters_it_knows)
{
    const struct {
        const char *why, *file;
        uint64_t total, available, active_anon;
        double percent;
        int complaints;
    } rows[] = {
        {"a quarter is available", "MemTotal: 1000 kB\nMemAvailable:\t250 kB\nActive(anon): 7", 1000, 250, 7, 75.0, 0},
        {"without a total there is no share", "MemAvailable: 250 kB\n", 0, 250, 0, 0.0, 0},
        {"more than all", "MemTotal: 1000 kB\nMemAvailable: 1500 kB\n", 1000, 1500, 0, -50.0, 0},
        {"a key is a whole one", "MemTotals: 1 kB\n MemTotal: 2 kB\nActive: 3 kB\nMemTotal: 4x\n", 4, 0, 0, 100.0, 0},
        // 31 characters, then the rest as a line of its own
        {"pieces", "0123456789012345678901234567890MemTotal: 5\nMemTotal:                     1234567\n", 1, 0, 0,
         100.0, 2},
        {"no digits, and a sign", "MemTotal: kB\nMemAvailable: +7", 0, 7, 0, 0.0, 0},
    };
    for (const auto &row : rows) {
        SCOPED_TRACE(row.why);
        the_device.put("/proc/meminfo", row.file);
        const captured_log log;
        vexa_meminfo m;
        ASSERT_EQ(meminfo(&m), 0);
        EXPECT_EQ(m.mem_total, row.total);
        EXPECT_EQ(m.mem_available, row.available);
        EXPECT_EQ(m.active_anon, row.active_anon);
        EXPECT_DOUBLE_EQ(m.used_percent, row.percent);
        std::string expected;
        for (int i = 0; i < row.complaints; i++)
            expected += "[error] libvexa_proc.meminfo(): No colon found\n";
        EXPECT_EQ(log.text(), expected);
    }
}

TEST(meminfo, is_complete_and_in_order_on_the_real_kernel)
{
    vexa_meminfo m;
    ASSERT_EQ(meminfo(&m), 0);
    const std::unique_ptr<json_t, decltype(&json_decref)> all{vexa_meminfo_to_obj(&m), json_decref};
    std::string keys;
    const char *key = nullptr;
    json_t *value = nullptr;
    json_object_foreach(all.get(), key, value)
    {
        keys += std::string(key) + " ";
        if (strcmp(key, "MemTotal") == 0 || strcmp(key, "Committed_AS") == 0) {
            EXPECT_GT(json_integer_value(value), 1000) << key;
        }
    }
    EXPECT_EQ(keys, "MemTotal MemFree MemAvailable Buffers Cached Active Inactive Active(anon) Inactive(anon) "
                    "Active(file) Inactive(file) Unevictable Mlocked Dirty Writeback AnonPages Mapped Shmem Slab "
                    "SReclaimable SUnreclaim KernelStack PageTables CommitLimit Committed_AS ");
    EXPECT_GT(m.used_percent, 0.0);
    EXPECT_LT(m.used_percent, 100.0);
}

TEST(get_memused_percent, is_of_the_callers_record)
{
    the_device.put("/proc/meminfo", "MemTotal: 1000 kB\nMemAvailable: 250 kB\n");
    struct sysinfo si {};
    si.totalram = 3;
    si.freeram = 2;
    EXPECT_EQ(get_memused_percent(&si), float(100.0 / 3));
}

TEST(meminfo, tells_that_the_file_is_missing)
{
    the_device.remove("/proc/meminfo");
    vexa_meminfo m{};
    m.mem_total = 9;
    const captured_log log;
    EXPECT_EQ(meminfo(&m), -1);
    EXPECT_EQ(m.mem_total, 9u);
    EXPECT_EQ(log.text(),
              "[error] libvexa_proc.meminfo(): Failed to open '/proc/meminfo': No such file or directory\n");
}
