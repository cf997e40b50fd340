// SPDX-License-Identifier: MIT
#include "tests/support/captured_log.h"
#include "tests/support/device.h"
#include "tests/support/program.h"

#include <arpa/inet.h>
#include <net/if.h>

TEST(set_iface_ip, sets_what_get_iface_ip_reads)
{
    uint32_t addr = 0;
    EXPECT_EQ(set_iface_ip("eth1", "198.51.100.7"), 0);
    EXPECT_EQ(get_iface_ip("eth1", &addr), 0);
    EXPECT_EQ(addr, inet_addr("198.51.100.7"));
    EXPECT_EQ(set_iface_ip("eth1", "198.51.100.8.9"), 0) << "sets 0.0.0.0";
    EXPECT_EQ(get_iface_ip("eth1", &addr), -1);
}

TEST(get_iface_index, counts_fifteen_characters_of_a_name)
{
    ASSERT_EQ(run_program({"ip", "link", "add", "fifteen-letters", "type", "bridge"}).status, 0);
    uint32_t index = 0;
    EXPECT_EQ(get_iface_index("fifteen-letters-and-more", &index), 0);
    EXPECT_EQ(index, if_nametoindex("fifteen-letters"));
    EXPECT_EQ(iface_is_up("fifteen-letters-and-more"), 0);
    EXPECT_EQ(iface_is_up("br0"), 1);
}

TEST(iface, says_what_failed_on_a_missing_interface)
{
    const captured_log log;
    uint32_t out;
    EXPECT_EQ(set_iface_ip("none", "192.0.2.1"), -1);
    EXPECT_EQ(get_iface_ip("none", &out), -1);
    EXPECT_EQ(get_iface_index("none", &out), -1);
    EXPECT_EQ(iface_is_up("none"), 0);
    EXPECT_EQ(log.text(), "[error] libvexa_util.set_iface_ip(): ioctl SIOCSIFADDR failed\n"
                          "[debug] libvexa_util.get_iface_ip(): ioctl SIOCGIFADDR failed\n"
                          "[error] libvexa_util.get_iface_index(): ioctl SIOCGIFINDEX failed\n"
                          "[error] libvexa_util.iface_is_up(): ioctl SIOCGIFFLAGS failed on none\n");
}
