// SPDX-License-Identifier: MIT
#include "tests/device/network.h"

TEST(devhwaddr, is_that_of_the_first_of_three_interfaces)
{
    using address = std::array<uint8_t, 6>;
    const address eth0{0x02, 0x56, 0x58, 0x00, 0x10, 0x01}, eth1{0x02, 0x56, 0x58, 0x00, 0x10, 0x02};
    address mac{};
    EXPECT_EQ(devhwaddr_get_iface(mac.data(), "eth1"), 0);
    EXPECT_EQ(mac, eth1);
    EXPECT_EQ(devhwaddr_get_iface(mac.data(), "eth9"), -ECHILD);
    EXPECT_EQ(devhwaddr_get(mac.data()), 0);
    EXPECT_EQ(mac, eth0);

    ip("link set eth0 down; ip link set eth0 name cpu0; ip link set br0 address 02:56:58:00:10:99");
    EXPECT_EQ(devhwaddr_get(mac.data()), 0);
    EXPECT_EQ(mac[5], 0x99) << "br0";
    ip("link set eth1 down; ip link set eth1 name eth0_real");
    EXPECT_EQ(devhwaddr_get(mac.data()), 0);
    EXPECT_EQ(mac, eth1);
    ip("link set eth0_real name eth1; ip link set br0 down; ip link set br0 name br1");
    EXPECT_EQ(devhwaddr_get(mac.data()), 1);
    ip("link set br1 name br0; ip link set cpu0 name eth0; ip link set br0 address 02:56:58:00:10:01");
    ip("link set eth0 up; ip link set eth1 up; ip link set br0 up; ip route replace default via 192.0.2.1 dev br0");
}
