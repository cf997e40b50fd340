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

// Address and mask.
std::pair<uint32_t, uint32_t> address_of(const std::string &ifname)
{
    std::pair<uint32_t, uint32_t> found{1, 1};
    const int result = interface_get_ipaddress(index_of(ifname), &found.first, &found.second);
    EXPECT_EQ(result, found.second == 1 ? -1 : 0);
    return found;
}

} // namespace

TEST(interface_is_up, looks_through_answers_of_any_size)
{
    ip("-V; for i in $(seq 60); do echo link add many$i type bridge; done | ip -batch -; ip link set many59 up");
    EXPECT_EQ(interface_is_up(index_of("br0")), 0);
    EXPECT_EQ(interface_is_up(index_of("many59")), 0);
    for (const int none : {index_of("many58"), 0, -1, INT_MAX})
        EXPECT_EQ(interface_is_up(none), -1) << none;
    ip("-V; for i in $(seq 60); do ip link del many$i; done");
}

TEST(interface_get_ipaddress, tells_the_first_address_in_host_order)
{
    EXPECT_EQ(address_of("br0"), std::pair(host_order("192.0.2.20"), 0xffffff00U));
    EXPECT_EQ(address_of("eth0"), std::pair(1U, 1U)) << "untouched";
    ip("link add peer0 type bridge; ip addr add 198.51.100.1 peer 198.51.100.2/31 dev peer0");
    EXPECT_EQ(address_of("peer0"), std::pair(host_order("198.51.100.1"), 0xfffffffeU)) << "not that of the other end";
    ip("addr flush dev peer0; ip addr add 198.51.100.1/0 dev peer0");
    EXPECT_EQ(address_of("peer0"), std::pair(host_order("198.51.100.1"), 0U));
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
}

TEST(replace_ifname, renames_within_sixteen_bytes)
{
    const auto renamed = [](const char *name, const char *prefix = "eth") {
        char ifname[18];
        memcpy(ifname, name, strlen(name) + 1);
        replace_ifname(ifname, prefix);
        return std::string(ifname);
    };
    EXPECT_EQ(renamed("lan10"), "eth10");
    EXPECT_EQ(renamed("eth3"), "eth3");
    EXPECT_EQ(renamed("lan3.20"), "eth3");
    EXPECT_EQ(renamed("lan"), "lan");
    EXPECT_EQ(renamed("wlan1", ""), "eth1");
    for (const char *as_it_is : {"a12345678901234", "lan45678901234567"})
        EXPECT_EQ(renamed(as_it_is), as_it_is);
    EXPECT_EQ(renamed("abc123456789012"), "eth123456789012");
}
