// SPDX-License-Identifier: MIT
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
