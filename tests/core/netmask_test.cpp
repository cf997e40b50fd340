// SPDX-License-Identifier: MIT
#include "tests/support/device.h"

TEST(netmask, has_its_edges)
{
    const std::pair<unsigned, uint32_t> rows[] = {{24, 0xffffff00}, {32, 0xffffffff}, {0, 0xffffffff}, {33, 0}};
    for (const auto &[prefix, mask] : rows)
        EXPECT_EQ(ipv4_netmask_from_prefix_len(prefix), mask) << prefix;
    EXPECT_EQ(ipv4_prefix_len_from_netmask(0xff00ff00), 16) << "bits, not leading ones";
    uint8_t mask[16];
    ipv6_netmask_from_prefix_len(mask, 65);
    EXPECT_THAT(mask, testing::ElementsAre(255, 255, 255, 255, 255, 255, 255, 255, 128, 0, 0, 0, 0, 0, 0, 0));
    ipv6_netmask_from_prefix_len(mask, 200);
    EXPECT_THAT(mask, testing::Each(255));
    const uint8_t a[16] = {0xfd, 0x00, 0x01}, b[16] = {0xfd, 0x00, 0x03};
    EXPECT_EQ(net_equals_v6(a, b, 22), 1);
    EXPECT_EQ(net_equals_v6(a, b, 23), 0);
}
