// SPDX-License-Identifier: MIT
#include "tests/support/device.h"

namespace {

constexpr char running[] = "/tmp/system.cfg", persistent[] = "/etc/persistent/cfg/mgmt";

} // namespace

TEST(get_analytics_mode, stays_anonymous_until_someone_chooses)
{
    const auto mode = [](const std::string &settings) {
        the_device.put(running, settings);
        const std::unique_ptr<cfg_entry, decltype(&free_cfg)> cfg{parse(running), free_cfg};
        return std::pair(get_analytics_mode(cfg.get()), get_analytics_coredump_mode(cfg.get()));
    };
    const std::string status = "system.analytics.status=", anonymous = "system.analytics.anonymous=";
    EXPECT_EQ(mode(""), std::pair(2, 0));
    EXPECT_EQ(mode(status + "disabled\n"), std::pair(2, 0));
    EXPECT_EQ(mode(status + "enabled\n"), std::pair(1, 0));
    EXPECT_EQ(mode(anonymous + "disabled\n"), std::pair(1, 0));
    EXPECT_EQ(mode(anonymous + "maybe\nsystem.analytics.coredump=enabled\n"), std::pair(2, 1));
    EXPECT_EQ(mode(anonymous + "disabled\n" + status + "disabled\n"), std::pair(0, 0));
    EXPECT_EQ(mode(anonymous + "enabled\n" + status + "enabled\n"), std::pair(2, 0));
}

TEST(get_trel_env, keeps_unreleased_builds_out_of_production)
{
    // at large, and with a build of a branch
    const auto env = [](const char *in_running, const char *in_persistent = "") {
        the_device.put(running, in_running);
        the_device.put(persistent, in_persistent);
        the_device.put("/usr/lib/build.properties", "scm_reftype=atag\n");
        EXPECT_EQ(get_trel_env_limit_prod(), get_trel_env()) << "a release";
        the_device.put("/usr/lib/build.properties", "");
        const int unknown = get_trel_env_limit_prod();
        the_device.put("/usr/lib/build.properties", "scm_reftype=branch\n");
        EXPECT_EQ(get_trel_env_limit_prod(), unknown);
        return std::pair(get_trel_env(), unknown);
    };
    EXPECT_EQ(env(""), std::pair(0, 2));
    EXPECT_EQ(env("mgmt.trel.env=dev\n", "mgmt.trel.env=prod\n"), std::pair(2, 2));
    EXPECT_EQ(env("mgmt.trel.env=\n", "mgmt.trel.env=stage\n"), std::pair(1, 1));
    EXPECT_EQ(env("mgmt.trel.env=other\n", "mgmt.trel.env=stage\n"), std::pair(0, 2));
    EXPECT_EQ(env("mgmt.trel.env.force=enabled\n", "mgmt.trel.env.force=0\n"), std::pair(0, 0));
    EXPECT_EQ(env("", "mgmt.trel.env.force=100\n"), std::pair(0, 0));
    EXPECT_EQ(env("mgmt.trel.env.force=0\n", "mgmt.trel.env.force=1\n"), std::pair(0, 2));
}
