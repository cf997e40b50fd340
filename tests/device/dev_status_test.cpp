// SPDX-License-Identifier: MIT
#include "tests/device/network.h"

#include <linux/if.h>

namespace {

std::array<uint64_t, 9> counters(const dev_status &st)
{
    return {st.rx_bytes, st.rx_packets, st.rx_errors, st.rx_dropped, st.rx_multicast,
            st.tx_bytes, st.tx_packets, st.tx_errors, st.tx_dropped};
}

std::array<uint64_t, 9> kernel_counters(const std::string &ifname)
{
    std::array<uint64_t, 9> values{};
    uint64_t *value = values.data();
    for (const char *file : {"rx_bytes", "rx_packets", "rx_errors", "rx_dropped", "multicast", "tx_bytes", "tx_packets",
                             "tx_errors", "tx_dropped"})
        *value++ = std::stoull(the_device.text("/sys/class/net/" + ifname + "/statistics/" + file));
    return values;
}

} // namespace

TEST(fill_dev_status, counts_what_the_kernel_counts)
{
    constexpr uint8_t station[6] = {0x02, 0x56, 0x58, 0xab, 0xcd, 0x10};
    dev_status before{}, st{};
    ASSERT_EQ(fill_dev_status("eth1", &before), 0);
    send_frames("cable1", station, 70, 1000);
    ASSERT_TRUE(eventually([&] { return kernel_counters("eth1")[1] >= before.rx_packets + 70; }));
    ASSERT_TRUE(eventually([&] { // nothing comes in between
        const auto kernel = kernel_counters("eth1");
        return fill_dev_status("eth1", &st) == 0 && counters(st) == kernel;
    }));
    EXPECT_GE(st.rx_bytes - before.rx_bytes, 70'000U - 70 * 14);
    EXPECT_EQ(st.present, 1);
}

TEST(fill_dev_status, tells_address_flags_and_link)
{
    dev_status st{};
    ASSERT_EQ(fill_dev_status("br0", &st), 0);
    EXPECT_STREQ(st.ip_str, "192.0.2.20");
    EXPECT_STREQ(st.netmask_str, "255.255.255.0");
    EXPECT_EQ(std::pair(st.ip, st.netmask), std::pair(inet_addr(st.ip_str), inet_addr(st.netmask_str)));
    EXPECT_TRUE(st.flags & IFF_UP);
    EXPECT_EQ(memcmp(st.hwaddr, "\x02\x56\x58\x00\x10\x01", 6), 0);
    ASSERT_EQ(fill_dev_status("eth0", &st), 0);
    EXPECT_EQ(std::tuple(st.speed, st.duplex, st.speed2, st.duplex2), std::tuple(10000U, 1U, 10000U, 1U)) << "veth";
    EXPECT_STREQ(st.ip_str, "0.0.0.0");
    EXPECT_EQ(get_ethtool_link_status("eth0"), 1);
    ip("link add loose type bridge");
    EXPECT_EQ(get_ethtool_link_status("loose"), 0);
    EXPECT_EQ(get_ethtool_link_status("eth9"), -1);
    ip("link del loose");
}

TEST(fill_dev_status, reads_sixteen_columns)
{
    using numbers = std::array<uint64_t, 9>;
    dev_status st{};
    const auto read = [&st](const std::string &lines) {
        the_device.put("/proc/net/dev", "Inter-| Receive\n face |bytes\n" + lines);
        st = {};
        EXPECT_EQ(fill_dev_status("eth0", &st), 0);
        return counters(st);
    };
    EXPECT_EQ(read("eth0 1 2 3\n"), numbers{}) << "no colon";
    EXPECT_EQ(st.present, 0);
    EXPECT_EQ(read(" eth00: 1\n \teth0:1 2 3 4 5 6 7 8 9 10 11 12 13 14 15 16\n"),
              (numbers{1, 2, 3, 4, 8, 9, 10, 11, 12}));
    EXPECT_EQ(st.present, 1);
    EXPECT_EQ(read("eth0: 0x10 010 18446744073709551615 4"), (numbers{16, 8, UINT64_MAX, 4})) << "any base";
    for (const char *without_heading : {"eth0: 1 2 3\n", ""}) {
        the_device.put("/proc/net/dev", without_heading);
        EXPECT_EQ(fill_dev_status("eth0", &st), -ENOENT);
    }
    the_device.remove("/proc/net/dev");
    EXPECT_EQ(fill_dev_status("eth0", &st), -1);
}
