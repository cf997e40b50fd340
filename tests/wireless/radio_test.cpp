// SPDX-License-Identifier: MIT
#include "tests/wireless/lists.h"

#include <array>
#include <bit>
#include <sys/socket.h>
#include <unistd.h>

namespace {

constexpr char vap_line[] = "vap ra0 radio=ra0 ssid=\"Harbour Street\" bssid=02:56:58:00:10:10 power=17 mode=";
constexpr char radio_line[] = "radio ra0 channel=0x1e9 width=160 frequency=0xf1000001 chains=8 max_rate=0xf1000002 "
                              "gain=0xf1000003 busy=4 busy_rx=5 "
                              "busy_tx=6 interference=7 rx_packets=8 tx_packets=9 rx_bytes=10 tx_bytes=11 rx_errors=12 "
                              "tx_errors=13 tx_retries=14 "
                              "tx_dropped=15 beacons=16 noise=-92";

} // namespace

TEST(fill_wireless_info, takes_each_field_from_its_request)
{
    set_air(std::string{radio_line} + "\n" + vap_line + "managed");
    wireless_info info{};
    EXPECT_EQ(fill_wireless_info("ra0", &info), 0);
    EXPECT_STREQ(info.essid, "Harbour Street");
    EXPECT_EQ(bytes(info.bssid, info.bssid + 6), (bytes{2, 0x56, 0x58, 0, 0x10, 0x10}));
    EXPECT_EQ((std::array{info.mode, info.channel, info.width, info.chains, info.ieee_mode, info.dfswait}),
              (std::array<uint8_t, 6>{1, 0xe9, 160, 8, 5, 0}));
    EXPECT_EQ((std::array{info.frequency, info.txpower, info.max_rate}), (std::array{0xf1000001u, 17u, 0xf1000002u}));
    EXPECT_EQ(get_antenna_gain("ra0"), 0xf1000003u);

    change(std::string{vap_line} + "master\nradio ra0 channel=6 dfs=1");
    fill_wireless_info("ra0", &info);
    EXPECT_EQ((std::array{info.mode, info.channel, info.ieee_mode}), (std::array<uint8_t, 3>{2, 6, 6}));
    change(std::string{vap_line} + "4");
    for (const char *request : {"SIOCGIWAP", "SIOCGIWTXPOW", "RADIOSTAT", "DFSWAIT", "ANTGAIN"})
        change("radio ra0 channel=7\nfail " + std::string{request} + " EIO");
    fill_wireless_info("ra0", &info);
    EXPECT_EQ((std::array{info.mode, info.channel, info.ieee_mode, info.dfswait}), (std::array<uint8_t, 4>{2, 6, 5, 0}))
        << "what fails stays, but for the radar check";
    EXPECT_EQ(get_antenna_gain("ra0"), 0u);

    const captured_log log{8};
    change("fail SIOCGIWESSID EIO");
    fill_wireless_info("ra0", &info);
    EXPECT_STREQ(info.essid, "");
    EXPECT_EQ(log.text(), "[debug] libvexa.fill_wireless_info(): unable to get essid: Input/output error\n");
    change("fail socket EMFILE");
    const auto contents = [&info] { return std::bit_cast<std::array<uint8_t, sizeof info>>(info); };
    const auto before = contents();
    EXPECT_EQ(fill_wireless_info("ra0", &info), 0);
    EXPECT_EQ(contents(), before);
}

TEST(get_athstat, copies_the_words_of_the_radio)
{
    set_air(radio_line);
    athstat a{};
    get_athstat("ra0", &a);
    const uint32_t words[14] = {8, 9, 10, 11, 12, 13, 4, 5, 6, 7, uint32_t(-92), 14, 15, 16};
    EXPECT_EQ(memcmp(&a, words, sizeof words), 0);
    change("fail RADIOSTAT EIO\nradio ra0 busy=99");
    get_athstat("ra0", &a);
    EXPECT_EQ(a.busy, 4u);
}

TEST(get_if_essid, ends_within_the_buffer)
{
    set_air("vap ra0 ssid=\"0123456789\"");
    char buf[16];
    memset(buf, '#', sizeof buf);
    EXPECT_EQ(get_if_essid("ra0", buf, 11), 0);
    EXPECT_STREQ(buf, "0123456789");
    EXPECT_EQ(buf[11], '#');
    EXPECT_EQ(get_if_essid("ra0", buf, 10), 0);
    EXPECT_STREQ(buf, "012345678");
    change("answer SIOCGIWESSID length=65535");
    EXPECT_EQ(get_if_essid("ra0", buf, 12), 0);
    EXPECT_EQ(std::string(buf), std::string("0123456789\0", 10)) << "cut at the end of the buffer";
    EXPECT_EQ(get_if_essid("ra0", buf, 0), -1);
    EXPECT_STREQ(buf, "0123456789");
    change("fail SIOCGIWESSID EIO");
    EXPECT_EQ(get_if_essid("ra0", buf, 12), -1);
    EXPECT_STREQ(buf, "");
}

TEST(driver_requests, are_sent_as_they_are_said)
{
    const int sock = socket(AF_INET, SOCK_DGRAM | SOCK_CLOEXEC, 0);
    const std::pair<uint32_t, uint8_t> words[] = {{0, 0}, {1, 1}, {255, 255}, {256, 1}, {0x1ff, 255}, {0x80000000, 1}};
    for (const auto &[word, waiting] : words) {
        set_air("radio ra0 dfs=" + std::to_string(word));
        uint8_t dfs = 77;
        fill_dfswait(sock, "ra0", &dfs);
        EXPECT_EQ(dfs, waiting) << word;
    }
    uint8_t macs[12] = {};
    set_air("station 02:57:00:00:00:05 vap=apcli0");
    EXPECT_EQ(get80211priv(sock, "apcli0", 0x8a21, 0, 0, macs, sizeof macs), 6);
    EXPECT_EQ(macs[5], 5);
    EXPECT_EQ(set80211priv(sock, "apcli0", 0x8a21, 0, 0, macs, sizeof macs), 0);
    EXPECT_EQ(get80211priv(sock, "ra0", 0x8a21, 0, 0, macs, sizeof macs), -1);
    EXPECT_EQ(errno, EOPNOTSUPP);
    close(sock);
    EXPECT_EQ(vexa_set_bpdu_filter("ra0", -2147483647), 0);
    EXPECT_EQ(vexa_scan_request("ra0", nullptr), 0);
    EXPECT_EQ(vexa_scan_request("ra0", std::string(200, 's').c_str()), 0);
    EXPECT_EQ(sim::driver::log(),
              "SET ra0 bga=-2147483647\nSET ra0 SiteSurvey=\nSET ra0 SiteSurvey=" + std::string(116, 's') + "\n");
    const captured_log log{4};
    change("fail SET EIO");
    EXPECT_EQ(vexa_scan_request("ra0", ""), -1);
    change("fail socket EMFILE");
    EXPECT_EQ(vexa_set_bpdu_filter("ra0", 1), -1);
    EXPECT_EQ(log.text(),
              "[error] libvexa.vexa_scan_request(): ioctl(IEEE80211_IOCTL_SET) failed: Input/output error\n"
              "[error] libvexa.vexa_set_bpdu_filter(): ioctl(IEEE80211_IOCTL_SET) failed: Too many open files\n");
    EXPECT_EQ(vexa_set_net_annid(-7), -7);
}
