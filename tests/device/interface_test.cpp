// SPDX-License-Identifier: MIT
#include "tests/device/network.h"

namespace {

int index_of(const std::string &ifname)
{
    return int(if_nametoindex(ifname.c_str()));
}

uint32_t host_order(const char *dotted)
{
    return ntohl(inet_addr(dotted));
}

} // namespace

TEST(interface_is_up, looks_through_answers_of_any_size)
{
    ip("link; for i in $(seq 60); do echo link add many$i type bridge; done | ip -batch -; ip link set many59 up");
    EXPECT_EQ(interface_is_up(index_of("br0")), 0);
    EXPECT_EQ(interface_is_up(index_of("many59")), 0);
    for (const int none : {index_of("many58"), 0, -1, INT_MAX})
        EXPECT_EQ(interface_is_up(none), -1) << none;
    ip("link; for i in $(seq 60); do ip link del many$i; done");
}

TEST(interface_get_ipaddress, tells_the_first_address_in_host_order)
{
    uint32_t address = 1, mask = 1;
    EXPECT_EQ(interface_get_ipaddress(index_of("br0"), &address, &mask), 0);
    EXPECT_EQ(address, host_order("192.0.2.20"));
    EXPECT_EQ(mask, 0xffffff00U);
    EXPECT_EQ(interface_get_ipaddress(index_of("eth0"), &address, &mask), -1);
    EXPECT_EQ(mask, 0xffffff00U) << "untouched";
    ip("link add peer0 type bridge; ip addr add 198.51.100.1 peer 198.51.100.2/31 dev peer0");
    EXPECT_EQ(interface_get_ipaddress(index_of("peer0"), &address, &mask), 0);
    EXPECT_EQ(address, host_order("198.51.100.1")) << "its own, not that of the other end";
    EXPECT_EQ(mask, 0xfffffffeU);
    ip("addr flush dev peer0; ip addr add 198.51.100.1/0 dev peer0");
    EXPECT_EQ(interface_get_ipaddress(index_of("peer0"), &address, &mask), 0);
    EXPECT_EQ(mask, 0U);
    ip("link del peer0");
}

TEST(wan_discover_possible, says_what_is_in_the_way)
{
    ip("link add wan type bridge; ip link set wan up");
    const int lan = index_of("br0"), wan = index_of("wan");
    const uint32_t elsewhere = host_order("198.51.100.9"), in_lan = host_order("192.0.2.200");
    EXPECT_EQ(wan_discover_possible(lan, wan, elsewhere), -ENODEV);
    ip("addr add 203.0.113.9/28 dev wan");
    EXPECT_EQ(wan_discover_possible(lan, wan, elsewhere), 0);
    EXPECT_EQ(wan_discover_possible(lan, wan, in_lan), -EADDRNOTAVAIL);
    EXPECT_EQ(wan_discover_possible(wan, lan, in_lan), 0) << "the subnet of the first counts";
    ip("addr flush dev wan; ip addr add 192.0.2.99/32 dev wan");
    EXPECT_EQ(wan_discover_possible(lan, wan, elsewhere), -EADDRNOTAVAIL);
    ip("link set wan down");
    EXPECT_EQ(wan_discover_possible(lan, wan, elsewhere), -ENETDOWN);
    EXPECT_EQ(wan_discover_possible(wan, lan, elsewhere), -ENETDOWN);
    ip("link del wan");
    EXPECT_EQ(wan_discover_possible(lan, wan, elsewhere), -ENETDOWN);
}

TEST(replace_ifname, renames_within_sixteen_bytes)
{
    constexpr const char *rows[][3] = {
        {"lan10", "eth", "eth10"},
        {"eth3", "eth", "eth3"},
        {"lan3.20", "eth", "eth3"},
        {"lan", "eth", "lan"},
        {"wlan1", "", "eth1"},
        {"a12345678901234", "eth", "a12345678901234"},
        {"abc123456789012", "eth", "eth123456789012"},
        {"lan45678901234567", "eth", "lan45678901234567"},
    };
    for (const auto &[name, prefix, expected] : rows) {
        char ifname[18];
        strcpy(ifname, name);
        replace_ifname(ifname, prefix);
        EXPECT_STREQ(ifname, expected) << name;
    }
}
