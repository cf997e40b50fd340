// SPDX-License-Identifier: MIT
#include "tests/support/device.h"

TEST(get_uplink_device, follows_the_state)
{
    const struct {
        const char *state, *ifname;
        int wireless, result;
        const char *device;
    } rows[] = {
        {"init\n", "ath0", 1, 1, "before"}, {"wds", "", 2, 0, "port"},       {"eth", "eth0.5\n", 3, 0, "eth0.5"},
        {"down", "", 4, 2, "before"},       {"unknown", "", 0, 3, "before"}, {"", "ath0", 0, 0, "eth0"},
    };
    the_device.put("/var/run/system.uplink_port", "port\n");
    for (const auto &row : rows) {
        SCOPED_TRACE(row.state);
        the_device.put("/var/run/system.uplink", row.state);
        the_device.put("/var/run/system.uplink_ifname", row.ifname);
        char device[16] = "before";
        EXPECT_EQ(get_wireless_uplink_state(), row.wireless);
        EXPECT_EQ(get_uplink_device(device, sizeof device), row.result);
        EXPECT_STREQ(device, row.device);
        EXPECT_EQ(get_uplink_device(nullptr, 0), row.result);
    }
}
