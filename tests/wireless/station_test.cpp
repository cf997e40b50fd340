// SPDX-License-Identifier: MIT
#include "tests/support/failing_memory.h"
#include "tests/wireless/lists.h"

#include <arpa/inet.h>
#include <sstream>

namespace {

constexpr uint8_t mac[6] = {2, 0x57, 0, 0, 0, 1};
constexpr char station_line[] = "station 02:57:00:00:00:01 vap=ra0 ";

using station_ref = std::unique_ptr<stainfo, decltype([](void *p) { free(p); })>;

station_ref ask()
{
    return station_ref{get_stainfo("ra0", mac)};
}

} // namespace

TEST(get_stainfo, takes_each_field_from_its_place)
{
    // keys of the simulated driver's, and how many bytes it has for each
    std::istringstream words{
        "state 2 rssi 1 tx_rate 4 ccq 2 noise 2 associd 2 tx_power 2 vlan 2 auth_time 4 dhcp_start 4 dhcp_end 4 "
        "reserved 4 uptime 4 idle 4 rx_rate 4 tx_mcs 1 extra 2 width 4 tcp_tx_bytes 8 tcp_tx_stalls 2 tcp_tx_retries "
        "2 tcp_tx_lat_max 4 tcp_tx_lat_min 4 tcp_rx_lat_sum 4 tcp_rx_lat_samples 4 tcp_rx_bytes 8 rx_packets 8 "
        "rx_mcast 4 rx_bytes 8 rx_retries 4 tx_packets 4 tx_retry_bursts 4 tx_bytes 8 rx_counter 4 tx_counter 4 "
        "tx_lat_total 4 tx_lat_samples 4 tx_lat_min 4 tx_lat_max 4 tx_rts_retries 4 tx_retries 8 tx_mpdu_bytes 8 "
        "tx_total 8 tx_success 8 tx_dropped 8 tx_retries_mov 8 tx_attempts_mov 8 tx_total_mov 8 tx_dropped_mov 8 "
        "rx_bytes_mov 8 tx_bytes_mov 8 tx_rate_mov 4 rx_rate_mov 4 "};
    std::vector<std::pair<std::string, unsigned>> fields;
    for (std::pair<std::string, unsigned> f; words >> f.first >> f.second;)
        fields.push_back(f);
    const auto cut = [&](uint64_t value, size_t i) { return value << (64 - 8 * fields[i].second); };
    const auto made_up = [](size_t i) { return 0xf1d3b59779583a1c * (i + 1); };
    std::string line = station_line;
    for (size_t i = 0; i < fields.size(); i++)
        line += fields[i].first + "=" + std::to_string(cut(made_up(i), i) >> (64 - 8 * fields[i].second)) + " ";
    set_air(line + "serial=02:00:00:00:00:99 ip=192.0.2.7 host=till-1 identity=\"anna\"");
    const station_ref s = ask();
    ASSERT_TRUE(s);
    const auto numbers = [](auto... values) { return std::vector<uint64_t>{uint64_t(values)...}; };
    const std::vector<uint64_t> found =
        numbers(s->state, s->rssi, s->tx_rate, s->ccq, s->noise, s->associd, s->tx_power, s->vlan_id, s->auth_time,
                s->dhcpstart_time, s->dhcpend_time, s->driver_word, s->uptime, s->idletime, s->rx_rate, s->tx_mcs,
                s->driver_word2, s->bw_max_supp, s->tx_tcp_stats.goodbytes, s->tx_tcp_stats.stalls,
                s->tx_tcp_stats.retries, s->tx_tcp_stats.lat_max, s->tx_tcp_stats.lat_min, s->rx_tcp_stats.lat.sum,
                s->rx_tcp_stats.lat.count, s->rx_tcp_stats.goodbytes, s->rx_packets, s->rx_mcast, s->rx_bytes,
                s->rx_retries, s->tx_packets, s->tx_retry_burst_count, s->tx_bytes, s->rx_counter, s->tx_counter,
                s->tx_latency.total, s->tx_latency.total_count, s->tx_latency.min, s->tx_latency.max, s->tx_rts_retries,
                s->tx_retries, s->tx_data_mpdu_bytes, s->tx_total, s->wifi_tx_success, s->wifi_tx_dropped,
                s->tx_retries_mov, s->wifi_tx_attempts_mov, s->tx_total_mov, s->wifi_tx_dropped_mov, s->rx_bytes_mov,
                s->tx_bytes_mov, s->tx_rate_mov, s->rx_rate_mov);
    ASSERT_EQ(found.size(), fields.size());
    for (size_t i = 0; i < found.size(); i++)
        EXPECT_EQ(cut(found[i], i), cut(made_up(i), i)) << fields[i].first;
    EXPECT_EQ(s->valid, 1u);
    EXPECT_EQ(memcmp(s->mac, mac, sizeof mac), 0);
    EXPECT_EQ(s->serialno[5], 0x99);
    EXPECT_EQ(s->ip, inet_addr("192.0.2.7"));
    EXPECT_STREQ(s->hostname, "till-1");
    EXPECT_EQ(std::string(reinterpret_cast<const char *>(s->identity), s->identity_len), "anna");
    EXPECT_EQ(s->wifi_tx_attempts, s->tx_retries + s->tx_packets);
    EXPECT_EQ(get_sta_associd("ra0", mac), s->associd);
}

TEST(get_stainfo, rounds_averages_and_shares)
{
    const struct {
        const char *values;
        int32_t tx_latency, tcp_latency;
        uint32_t efficiency;
    } rows[] = {
        {"tx_lat_total=5 tx_lat_samples=2 tcp_rx_lat_sum=5 tcp_rx_lat_samples=2", 3, 3, 100},
        {"tx_lat_total=4 tx_lat_samples=3 tx_attempts_mov=80 tx_retries_mov=27", 1, -1, 66},
        {"tx_lat_total=0xffffffff tx_lat_samples=1 tx_retries_mov=1", INT32_MAX, -1, 100},
        {"tcp_rx_lat_sum=0xffffffff tcp_rx_lat_samples=1 tx_attempts_mov=1 tx_retries_mov=2", -1, INT32_MAX, 0},
    };
    for (const auto &row : rows) {
        set_air(station_line + std::string{row.values});
        const station_ref s = ask();
        EXPECT_EQ(s->tx_latency.avg, row.tx_latency) << row.values;
        EXPECT_EQ(s->rx_tcp_stats.lat.average, row.tcp_latency) << row.values;
        EXPECT_EQ(s->tx_eff_pct, row.efficiency) << row.values;
    }
}

TEST(get_stainfo, tells_capabilities_apart)
{
    const struct {
        const char *why, *values;
        uint32_t b, a, n, ac, ax, r;
    } rows[] = {
        {"old mode, short of the second bit", "mode_flags=0x80 capabilities=0", 1, 0, 0, 0, 0, 0},
        {"old mode with that bit", "mode_flags=0x80 capabilities=0x4", 0, 0, 0, 0, 0, 0},
        {"any other mode", "mode_flags=0xffffff7f capabilities=0x4", 0, 1, 0, 0, 0, 0},
        {"one bit each", "mode_flags=0 capabilities=0xb0000008", 0, 1, 1, 1, 1, 1},
        {"none but its neighbours", "mode_flags=0 capabilities=0x4ffffff7", 0, 1, 0, 0, 0, 0},
    };
    for (const auto &row : rows) {
        SCOPED_TRACE(row.why);
        set_air(station_line + std::string{row.values});
        const station_ref s = ask();
        ASSERT_TRUE(s);
        EXPECT_EQ((std::array{s->is_11b, s->is_11a, s->is_11n, s->is_11ac, s->is_11ax, s->is_11r}),
                  (std::array{row.b, row.a, row.n, row.ac, row.ax, row.r}));
    }
    EXPECT_EQ(ask()->flags, 0xfff7);
}

TEST(get_stainfo, survives_what_a_driver_may_say)
{
    set_air(station_line + std::string{"identity_length=255 tx_packets=5 uptime=9 tx_rate=5 host="} +
            std::string(32, 'h'));
    station_ref s = ask();
    EXPECT_EQ(s->identity_len, 64u);
    EXPECT_EQ(std::string(s->hostname, 32), std::string(32, 'h'));
    EXPECT_EQ(s->flags, 0);
    EXPECT_EQ(s->tx_eff_pct, 100u);
    EXPECT_EQ(s->tx_latency.avg, -1);

    change("answer STA_INFO2 cut=1788");
    s = ask();
    EXPECT_EQ(s->tx_rate, 5u);
    EXPECT_EQ(s->uptime + s->identity_len, 0u) << "behind the end of the answer";

    const captured_log log{8};
    change("fail NODESTAT EIO");
    s = ask();
    EXPECT_EQ(s->tx_packets, 0u);
    EXPECT_EQ(s->tx_latency.avg, -1);
    change("fail STA_INFO2 E2BIG");
    EXPECT_FALSE(ask());
    change("fail STA_INFO2 E2BIG below=65535");
    EXPECT_TRUE(ask());
    change("fail STA_INFO2 none\nfail socket EMFILE");
    EXPECT_FALSE(ask());
    EXPECT_EQ(get_sta_associd("ra0", mac), 0);
    const std::string tag = "libvexa.get_ieee80211req_sta_info(): ";
    std::string grown;
    for (const char *size : {"5296", "10592", "21184", "42368", "65535"})
        grown += "[debug] " + tag + "len not enough, enlarge " + size + "\n";
    const std::string no_counters = "[debug] libvexa.get_stainfo(): ioctl failed to get nodestat\n";
    const std::string no_socket = "[error] " + tag + "unable to open sock\n";
    EXPECT_EQ(log.text(), no_counters + grown + "[debug] " + tag + "IOCTL_STA_INFO2 failed: Argument list too long\n" +
                              grown + no_counters + no_socket + no_socket);
}

namespace {

// The last octets and what is valid: "1+ 3- ".
std::string stations_of(const char *vap)
{
    const list_ref list{get_stalist(vap)};
    if (!list)
        return "NULL";
    std::string text;
    for (const stainfo *s : entries_of<stainfo>(list))
        text += std::to_string(s->mac[5]) + (s->valid ? "+ " : "- ");
    return text;
}

} // namespace

TEST(get_stalist, lists_stations_in_the_order_of_the_answer)
{
    set_air("station 02:57:00:00:00:09 vap=ra0\nstation 02:57:00:00:00:01 vap=ra0 known=no\n"
            "station 02:57:00:00:00:03 vap=ra0\nstation 02:57:00:00:00:08 vap=apcli0 known=no\n"
            "station 02:57:00:00:00:05 vap=apcli0");
    const struct {
        const char *why, *change, *vap, *stations;
    } rows[] = {
        {"the tracker's station that the driver does not know is a placeholder", "", "ra0", "9+ 1- 3+ "},
        {"of the driver's own list it is left out", "", "apcli0", "5+ "},
        {"a rest of five bytes is no address", "answer GET_STATIONS cut=17", "ra0", "9+ 1- "},
        {"an answer of nothing is an empty list", "answer GET_STATIONS cut=0", "ra0", ""},
        {"so it is for the driver", "answer GETMACS cut=0", "apcli0", ""},
        {"a tracker that fails", "fail GET_STATIONS EIO", "ra0", "NULL"},
        {"a driver that wants room is asked with all there can be", "fail GETMACS E2BIG below=65535", "apcli0", "5+ "},
        {"and then it is over", "fail GETMACS E2BIG", "apcli0", "NULL"},
        {"any other failure", "fail GETMACS EIO", "apcli0", "NULL"},
        {"an interface that is none", "", "ra15", "NULL"},
    };
    for (const auto &row : rows) {
        SCOPED_TRACE(row.why);
        change(row.change);
        EXPECT_EQ(stations_of(row.vap), row.stations);
        change("remove answer GET_STATIONS\nremove answer GETMACS\nremove fail GET_STATIONS\nremove fail GETMACS");
    }
    const captured_log log{4};
    change("fail GET_STATIONS EIO");
    EXPECT_EQ(stations_of("ra0"), "NULL");
    EXPECT_THAT(log.text(),
                testing::ContainsRegex("\\[error\\] vexa_sta_ht_user.vexa_sta_ht_get_stas\\(\\): ioctl failed: "
                                       "ifindex: [0-9]+ errno:5\n"
                                       "\\[error\\] wireless.get_stalist\\(\\): too many stas: ra0\n"));
    free_stalist(nullptr);
}

TEST(get_stalist, without_memory_fails_or_ends_the_process_at_a_placeholder)
{
    set_air("station 02:57:00:00:00:09 vap=ra0\nstation 02:57:00:00:00:01 vap=ra0 known=no\n"
            "station 02:57:00:00:00:05 vap=apcli0");
    EXPECT_EQ(stations_of("ra0"), "9+ 1- "); // the driver has read its description
    const auto fail_in_turn = [](const char *vap) {
        bool failed = true;
        for (size_t after = 0; failed; after++) {
            vexa_list *list = nullptr;
            {
                const failing_memory none{after, 1};
                list = get_stalist(vap);
                failed = failing_memory::has_failed();
            }
            free_stalist(list);
        }
    };
    fail_in_turn("apcli0");
    libvexa_log_use_syslog = 0;
    EXPECT_DEATH(fail_in_turn("ra0"),
                 "wireless.get_stalist\\(\\): get_stalist: couldn't allocate memory for sta info!");
}
