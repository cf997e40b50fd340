// SPDX-License-Identifier: MIT
#include "tests/support/captured_log.h"
#include "tests/support/device.h"

TEST(build_info, comes_from_the_build_properties)
{
    char text[32] = "kept";
    EXPECT_EQ(get_build_time(text, sizeof text), -1);
    EXPECT_STREQ(text, "kept");
    EXPECT_EQ(get_vexa_scm_reftype(), 0);
    const struct {
        const char *properties, *time;
        int reftype;
    } rows[] = {
        {"build_date=2026-11-21\nbuild_time=08:15:00\nscm_reftype=atag\n", "2026-11-21 08:15:00", 1},
        {"scm_reftype=branch\nbuild_time=1\n", " 1", 2},
        {"scm_reftype=commit\n", " ", 0},
    };
    for (const auto &row : rows) {
        the_device.put("/usr/lib/build.properties", row.properties);
        EXPECT_EQ(get_build_time(text, sizeof text), 0);
        EXPECT_STREQ(text, row.time);
        EXPECT_EQ(get_vexa_scm_reftype(), row.reftype) << row.properties;
    }
}

TEST(vexa_force_cpu, binds_a_process_to_one_processor)
{
    const captured_log log;
    EXPECT_EQ(vexa_force_cpu(0, 1024), -1) << "no such processor";
    EXPECT_EQ(vexa_force_cpu(0, -1), -1);
    EXPECT_EQ(vexa_force_cpu(0, 0), 0);
    vexa_show_cpu_mask(0);
    EXPECT_THAT(log.text(), testing::HasSubstr("libvexa_util.vexa_show_cpu_mask(): force pid[0] nproc["));
    EXPECT_THAT(log.text(), testing::HasSubstr("cpu_mask=1 "));
}
