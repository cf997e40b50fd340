// SPDX-License-Identifier: MIT
#include "tests/support/device.h"

namespace {

constexpr char running[] = "/tmp/system.cfg", persistent[] = "/etc/persistent/cfg/mgmt";

} // namespace

TEST(get_analytics_mode, stays_anonymous_until_someone_chooses)
{
    constexpr struct {
        const char *file;
        int mode;
    } rows[] = {
        {"", 2},
        {"system.analytics.status=disabled\n", 2},
        {"system.analytics.status=enabled\n", 1},
        {"system.analytics.anonymous=disabled\n", 1},
        {"system.analytics.anonymous=enabled\n", 2},
        {"system.analytics.anonymous=maybe\n", 2},
        {"system.analytics.anonymous=disabled\nsystem.analytics.status=enabled\n", 1},
        {"system.analytics.anonymous=enabled\nsystem.analytics.status=enabled\n", 2},
        {"system.analytics.anonymous=enabled\nsystem.analytics.status=disabled\n", 0},
        {"system.analytics.anonymous=disabled\nsystem.analytics.status=disabled\n", 0},
    };
    for (const auto &row : rows) {
        the_device.put(running, row.file);
        cfg_entry *cfg = parse(running);
        EXPECT_EQ(get_analytics_mode(cfg), row.mode) << row.file;
        EXPECT_EQ(get_analytics_coredump_mode(cfg), 0);
        free_cfg(cfg);
    }
    the_device.put(running, "system.analytics.coredump=enabled\n");
    cfg_entry *cfg = parse(running);
    EXPECT_EQ(get_analytics_coredump_mode(cfg), 1);
    free_cfg(cfg);
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
        {"", "mgmt.trel.env.force=1\n", 0, 0},
        {"mgmt.trel.env.force=100\n", "", 0, 0},
        {"mgmt.trel.env.force=0\n", "mgmt.trel.env.force=1\n", 0, 2},
        {"mgmt.trel.env.force=disable\n", "", 0, 2},
        {"mgmt.trel.env.force=1\nmgmt.trel.env=stage\n", "", 1, 1},
    };
    for (const auto &row : rows) {
        SCOPED_TRACE(std::string(row.running) + row.persistent);
        the_device.put(running, row.running);
        the_device.put(persistent, row.persistent);
        EXPECT_EQ(get_trel_env(), row.env);
        the_device.put("/usr/lib/build.properties", "scm_reftype=branch\n");
        EXPECT_EQ(get_trel_env_limit_prod(), row.on_branch);
        the_device.put("/usr/lib/build.properties", "scm_reftype=atag\n");
        EXPECT_EQ(get_trel_env_limit_prod(), row.env) << "a release";
        the_device.put("/usr/lib/build.properties", "");
        EXPECT_EQ(get_trel_env_limit_prod(), row.on_branch) << "an unknown build";
    }
}
