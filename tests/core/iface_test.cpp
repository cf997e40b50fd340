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
    const captured_log log;
    EXPECT_EQ(iface_is_up("missing"), 0);
    EXPECT_EQ(log.text(), "[error] libvexa_util.iface_is_up(): ioctl SIOCGIFFLAGS failed on missing\n");
}
