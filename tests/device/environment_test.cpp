// SPDX-License-Identifier: MIT
#include "tests/support/device.h"

namespace {

constexpr char running[] = "/tmp/system.cfg", persistent[] = "/etc/persistent/cfg/mgmt";

} // namespace

TEST(get_analytics_mode, stays_anonymous_until_someone_chooses)
{
    const std::pair<std::string, int> rows[] = {
        {"", 2},
        {"status=disabled", 2},
        {"status=enabled", 1},
        {"anonymous=disabled", 1},
        {"anonymous=enabled", 2},
        {"anonymous=maybe", 2},
        {"anonymous=disabled\nsystem.analytics.status=disabled", 0},
        {"anonymous=enabled\nsystem.analytics.status=disabled", 0},
        {"coredump=enabled", 2},
    };
    for (const auto &[settings, mode] : rows) {
        the_device.put(running, "system.analytics." + settings + "\n");
        cfg_entry *cfg = parse(running);
        EXPECT_EQ(get_analytics_mode(cfg), mode) << settings;
        EXPECT_EQ(get_analytics_coredump_mode(cfg), settings == "coredump=enabled") << settings;
        free_cfg(cfg);
    }
}

TEST(get_trel_env, keeps_unreleased_builds_out_of_production)
{
    constexpr struct {
        const char *running, *persistent;
        int env, on_branch; // with a build of a branch
    } rows[] = {
        {"", "", 0, 2},
        {"mgmt.trel.env=dev\n", "mgmt.trel.env=prod\n", 2, 2},
        {"mgmt.trel.env=\n", "mgmt.trel.env=stage\n", 1, 1},
        {"mgmt.trel.env=other\n", "mgmt.trel.env=stage\n", 0, 2},
        {"mgmt.trel.env.force=enabled\n", "mgmt.trel.env.force=0\n", 0, 0},
        {"", "mgmt.trel.env.force=100\n", 0, 0},
        {"mgmt.trel.env.force=0\n", "mgmt.trel.env.force=1\n", 0, 2},
        {"mgmt.trel.env.force=1\nmgmt.trel.env=stage\n", "", 1, 1},
    };
    for (const auto &row : rows) {
        the_device.put(running, row.running);
        the_device.put(persistent, row.persistent);
        EXPECT_EQ(get_trel_env(), row.env) << row.running << row.persistent;
        for (const char *build : {"scm_reftype=branch\n", "scm_reftype=atag\n", ""}) {
            the_device.put("/usr/lib/build.properties", build);
            const bool is_release = strcmp(build, "scm_reftype=atag\n") == 0;
            EXPECT_EQ(get_trel_env_limit_prod(), is_release ? row.env : row.on_branch) << row.running << build;
        }
    }
}
