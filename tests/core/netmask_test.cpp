// SPDX-License-Identifier: MIT
#include <gmock/gmock.h>
#include <libvexa.h>

TEST(ipv4_netmask_from_prefix_len, shifts_modulo_32)
{
    const struct {
        unsigned prefix;
        uint32_t mask;
    } rows[] = {{24, 0xffffff00}, {32, 0xffffffff}, {1, 0x80000000}, {0, 0xffffffff}, {33, 0}};
    for (const auto &row : rows)
        EXPECT_EQ(ipv4_netmask_from_prefix_len(row.prefix), row.mask) << row.prefix;
    EXPECT_EQ(ipv4_prefix_len_from_netmask(0xff00ff00), 16) << "bits, not leading ones";
}

TEST(ipv6_netmask_from_prefix_len, fills_whole_and_partial_bytes)
{
    uint8_t mask[16];
    ipv6_netmask_from_prefix_len(mask, 65);
    EXPECT_THAT(mask, testing::ElementsAre(255, 255, 255, 255, 255, 255, 255, 255, 128, 0, 0, 0, 0, 0, 0, 0));
    ipv6_netmask_from_prefix_len(mask, 200);
    EXPECT_THAT(mask, testing::Each(255));
}

TEST(net_equals_v6, compares_under_the_mask)
{
    const uint8_t a[16] = {0xfd, 0x00, 0x01};
    const uint8_t b[16] = {0xfd, 0x00, 0x03};
    EXPECT_EQ(net_equals_v6(a, b, 22), 1);
    EXPECT_EQ(net_equals_v6(a, b, 23), 0);
    EXPECT_EQ(net_equals_v6(a, b, 0xffffffff), 0);
    EXPECT_EQ(net_equals_v6(a, nullptr, 0), 0);
}
