// SPDX-License-Identifier: MIT
#include "tests/wireless/lists.h"

#include <net/if.h>

namespace {

constexpr uint8_t mac[6] = {2, 0x57, 0, 0, 0, 0xab};
constexpr char station_line[] = "station 02:57:00:00:00:ab vap=ra0 ";

} // namespace

TEST(vexa_sta_ht, asks_the_tracking_device)
{
    set_air(station_line +
            std::string{"radio_mode=17 ip_obtained=1 arp_answered=2 dns_timeouts=3 dns_latency=0xffffffff "
                        "icmp_rtt=5 dhcp_requests=6 dhcp_difference=-7 dhcp_retries=-8 dhcp_offers=9 "
                        "dhcp_acks=10 disconnects=11 probe=00112233445566"});
    uint8_t macs[16] = {};
    EXPECT_EQ(vexa_sta_ht_get_stas(if_nametoindex("ra0"), macs, sizeof macs), 6);
    EXPECT_EQ(memcmp(macs, mac, sizeof mac), 0);
    change("answer GET_STATIONS length=70000");
    EXPECT_EQ(vexa_sta_ht_get_stas(if_nametoindex("ra0"), macs, sizeof macs), int(sizeof macs));

    stainfo s{};
    memcpy(s.mac, mac, sizeof mac);
    EXPECT_EQ(vexa_sta_ht_get_stats(&s, 0), 0);
    const uint32_t words[12] = {17, 1, 2, 3, UINT32_MAX, 5, 6, uint32_t(-7), uint32_t(-8), 9, 10, 11};
    EXPECT_EQ(memcmp(&s.tracking, words, sizeof words), 0);

    EXPECT_EQ(vexa_sta_ht_set_keyid(mac, 0xfffffffe, "0123456789abcdef0123456789abcdef"), 0);
    EXPECT_EQ(vexa_sta_ht_set_keyid(mac, 5, ""), 0);
    EXPECT_EQ(sim::driver::log(), "SET_KEYID 02:57:00:00:00:ab 4294967294 0123456789abcdef0123456789abcde\n"
                                  "SET_KEYID 02:57:00:00:00:ab 5 \n");

    uint8_t frame[16] = {};
    uint32_t length = sizeof frame;
    EXPECT_EQ(vexa_sta_ht_get_probe_frame(mac, 0, frame, &length), 0);
    EXPECT_EQ(length, 7u);
    EXPECT_EQ(frame[6], 0x66);
    change("answer GET_PROBE_FRAME length=4000000000");
    length = sizeof frame;
    EXPECT_EQ(vexa_sta_ht_get_probe_frame(mac, 0, frame, &length), 0);
    EXPECT_EQ(length, sizeof frame);
}

TEST(vexa_sta_ht, says_what_failed)
{
    const struct {
        const char *change, *lines;
        int last_length;
    } rows[] = {
        {"fail GET_STATIONS EIO\nfail GET_STATISTICS ENOENT\nfail SET_KEYID EPERM",
         "get_stas(): ioctl failed: ifindex: -2 errno:5\n"
         "get_stats(): ioctl failed: mac: [02:57:00:00:00:AB] errno:2\n"
         "set_keyid(): keyid ioctl failed: mac: [02:57:00:00:00:AB] errno:1\n",
         0},
        {"fail open EACCES",
         "get_stas(): cannot open the device errno:13\nget_stats(): cannot open the device errno:13\n"
         "set_keyid(): cannot open the device errno:13\nget_probe_frame(): cannot open the device errno:13\n",
         9},
    };
    set_air(""); // no station: the request for a frame fails, too, and sets its length all the same
    for (const auto &row : rows) {
        change(row.change);
        const captured_log log{1};
        stainfo s{};
        memcpy(s.mac, mac, sizeof mac);
        uint32_t length = 9;
        uint8_t room[16];
        EXPECT_EQ(vexa_sta_ht_get_stas(uint32_t(-2), room, sizeof room), -1);
        EXPECT_EQ(vexa_sta_ht_get_stats(&s, 0), -1);
        EXPECT_EQ(vexa_sta_ht_set_keyid(mac, 0, "x"), -1);
        EXPECT_EQ(vexa_sta_ht_get_probe_frame(mac, 0, room, &length), -1);
        EXPECT_EQ(length, uint32_t(row.last_length));
        std::string expected;
        const std::string lines = row.lines;
        for (size_t at = 0, end; (end = lines.find('\n', at)) != lines.npos; at = end + 1)
            expected += "[error] vexa_sta_ht_user.vexa_sta_ht_" + lines.substr(at, end + 1 - at);
        EXPECT_EQ(log.text(), expected);
    }
}
