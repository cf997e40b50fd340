// SPDX-License-Identifier: MIT
#include "tests/device/network.h"
#include "tests/support/captured_log.h"

TEST(get_mac_brinfo, finds_what_the_kernel_learned)
{
    constexpr uint8_t station[6] = {0x02, 0x56, 0x58, 0xab, 0xcd, 0x0e};
    unsigned age = 99, port = 99;
    const auto is_known = [&](const char *bridge = "br0", const char *mac = "02:56:58:ab:CD:0e") {
        return get_mac_brinfo(bridge, mac, &age, &port) == 1;
    };
    EXPECT_FALSE(is_known());
    EXPECT_EQ(age, 99U);
    send_frames("cable1", station);
    ASSERT_TRUE(eventually(is_known));
    EXPECT_LE(age, 5U);
    EXPECT_EQ(port, strtoul(the_device.text("/sys/class/net/br0/brif/eth1/port_no").c_str(), nullptr, 0));
    for (const char *other : {"02:56:58:ab:cd:0", "02:56:58:ab:cd:0e ", " 2:56:58:ab:cd:0e", "02-56-58-ab-cd-0e", ""})
        EXPECT_FALSE(is_known("br0", other)) << other;
    for (const char *bridge : {"br9", "eth1", "../net/br0", ""})
        EXPECT_FALSE(is_known(bridge)) << bridge;

    const captured_log standard_error;
    EXPECT_EQ(fdb_delneigh(station, "eth9"), -ENODEV);
    EXPECT_EQ(standard_error.text(), "fdb_delneigh: -19 on line 145\n");
    EXPECT_TRUE(is_known());
    EXPECT_EQ(fdb_delneigh(station, "eth1"), 0);
    EXPECT_FALSE(is_known());
}

TEST(bridge_ports, tell_their_state_and_number)
{
    EXPECT_EQ(get_br_port_state("br0", "eth0"), 3);
    EXPECT_TRUE(is_brif_forwarding("br0", "eth0") && !is_brif_disabled("br0", "eth0"));
    EXPECT_EQ(get_br_port_state("br0", "eth9"), -1);
    EXPECT_TRUE(!is_brif_forwarding("br0", "eth9") && is_brif_disabled("br0", "eth9"));
    ip("link add name br5 type bridge; ip link add port5 type veth peer name port6; ip link set port5 master br5");
    EXPECT_EQ(get_br_port_state("br5", "port5"), 0);
    EXPECT_TRUE(is_brif_disabled("br5", "port5"));
    char ifname[16] = "unchanged";
    EXPECT_EQ(get_ifname_from_br_portno("br5", 1, ifname), 1);
    EXPECT_STREQ(ifname, "port5");
    EXPECT_EQ(get_ifname_from_br_portno("br5", 2, ifname), 0);
    EXPECT_EQ(get_ifname_from_br_portno("br6", 1, ifname), 0);
    EXPECT_STREQ(ifname, "port5");
    the_device.put("/sys/class/net/br7/brif/folder/port_no", "0x1\n");
    EXPECT_EQ(get_ifname_from_br_portno("br7", 1, ifname), 0) << "a port is a link";
    ip("link del br5; ip link del port5");
}
