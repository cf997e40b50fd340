// SPDX-License-Identifier: MIT
#include "tests/support/device.h"
#include "tests/support/program.h"

TEST(get_uplink_device, follows_the_state)
{
    const struct {
        const char *state, *ifname, *port;
        int wireless, result;
        const char *device;
    } rows[] = {
        {"init\n", "ath0", "", 1, 1, "before"},   {"wds", "", "ath1\n", 2, 0, "ath1"},
        {"eth", "eth0.5\n", "p", 3, 0, "eth0.5"}, {"down", "", "", 4, 2, "before"},
        {"unknown", "", "", 0, 3, "before"},      {"initial", "", "", 0, 0, ""},
        {"", "ath0", "", 0, 0, "eth0"},
    };
    for (const auto &row : rows) {
        SCOPED_TRACE(row.state);
        the_device.put("/var/run/system.uplink", row.state);
        the_device.put("/var/run/system.uplink_ifname", row.ifname);
        the_device.put("/var/run/system.uplink_port", row.port);
        char device[16] = "before";
        EXPECT_EQ(get_wireless_uplink_state(), row.wireless);
        EXPECT_EQ(get_uplink_device(device, sizeof device), row.result);
        EXPECT_STREQ(device, row.device);
        EXPECT_EQ(get_uplink_device(nullptr, 0), row.result);
    }
}

TEST(get_uplink_device, guesses_what_is_up)
{
    for (const auto &[downed, guess] : {std::pair{"eth0", "eth1"}, {"eth1", "before"}}) {
        ASSERT_EQ(run_program({"ip", "link", "set", downed, "down"}).status, 0);
        char device[16] = "before";
        EXPECT_EQ(get_uplink_device(device, sizeof device), 0);
        EXPECT_STREQ(device, guess);
    }
    for (const char *name : {"eth0", "eth1"})
        run_program({"ip", "link", "set", name, "up"});
}
