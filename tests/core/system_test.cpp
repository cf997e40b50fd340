// SPDX-License-Identifier: MIT
#include "tests/support/captured_log.h"
#include "tests/support/device.h"

TEST(get_build_time, joins_date_and_time)
{
    char buf[24] = "before";
    EXPECT_EQ(get_build_time(buf, sizeof buf), -1);
    EXPECT_STREQ(buf, "before");
    the_device.put("/usr/lib/build.properties",
                   "build_date=2024-02-30-and-more\nbuild_time=11:22:33\nscm_reftype=branch\n");
    EXPECT_EQ(get_build_time(buf, sizeof buf), 0);
    EXPECT_STREQ(buf, "2024-02-30- 11:22:33");
    EXPECT_EQ(get_build_time(buf, 5), 0);
    EXPECT_STREQ(buf, "2024");
    EXPECT_EQ(get_build_time(nullptr, -1), -1);
    EXPECT_EQ(get_vexa_scm_reftype(), 2);
    the_device.put("/usr/lib/build.properties", "scm_reftype=atag\n");
    EXPECT_EQ(get_vexa_scm_reftype(), 1);
}

TEST(vexa_force_cpu, binds_to_one_cpu)
{
    const captured_log log;
    EXPECT_EQ(vexa_force_cpu(0, 0), 0);
    for (const int cpu : {-1, 1024, INT_MAX})
        EXPECT_EQ(vexa_force_cpu(0, cpu), -1) << cpu;
    vexa_show_cpu_mask(0);
    EXPECT_THAT(log.text(), testing::MatchesRegex(".*vexa_show_cpu_mask\\(\\): force pid\\[0\\] nproc\\[.*\\] "
                                                  "with cpu_mask=1 (0 )*\n"));
}
