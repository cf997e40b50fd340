// SPDX-License-Identifier: MIT
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
