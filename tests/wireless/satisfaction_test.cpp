// SPDX-License-Identifier: MIT
#include "tests/support/captured_log.h"
#include "tests/support/device.h"
#include "tests/support/failing_memory.h"

#include <cstring>
#include <random>

namespace {

enum { phy = 1, tcp = 3, retries = 4, ip = 8, arp, dns, dns_time, icmp, leaves, dhcp, drops };

using change = void (*)(stainfo &, uint64_t);

// Perfect but for the change.
stainfo station(change make, uint64_t value)
{
    stainfo sta{};
    sta.valid = 1;
    sta.tx_eff_pct = 100;
    sta.tracking.ip_obtained = sta.tracking.arp_answered = 1;
    sta.tracking.dns_latency = UINT32_MAX;
    make(sta, value);
    return sta;
}

int subscore(int factor, change make, uint64_t value, vexa_score stainfo::*set = &stainfo::satisfaction)
{
    stainfo sta = station(make, value);
    calc_sta_satisfaction(&sta);
    return (sta.*set).subscores_now[factor];
}

void rate(stainfo &sta, uint16_t state, uint64_t kbps)
{
    sta.state = state;
    sta.tx_rate_mov = uint32_t(kbps);
}

void latency(stainfo &sta, int rx_count, uint64_t rx, int tx_count, int tx)
{
    sta.rx_tcp_stats.lat = {0, rx_count, int32_t(rx)};
    sta.tx_tcp_stats.lat = {0, tx_count, tx};
}

void air(stainfo &sta, uint32_t mode, uint64_t attempts, uint64_t retried, uint64_t dropped)
{
    sta.tracking.radio_mode = mode;
    sta.wifi_tx_attempts_mov = attempts;
    sta.tx_retries_mov = retried;
    sta.wifi_tx_dropped_mov = dropped;
}

// Without an address: the digits are requests, difference, retries, offers and acknowledgements.
void asks(stainfo &sta, uint64_t digits)
{
    const auto digit = [digits](uint64_t place) { return int32_t(digits / place % 10); };
    sta.tracking.ip_obtained = 0;
    sta.tracking.dhcp_requests = uint32_t(digit(10000));
    sta.tracking.dhcp_difference = digit(1000);
    sta.tracking.dhcp_retries = digit(100);
    sta.tracking.dhcp_offers = uint32_t(digit(10));
    sta.tracking.dhcp_acks = uint32_t(digit(1));
}

#define SET(...) [](stainfo &s, [[maybe_unused]] uint64_t v) { __VA_ARGS__; }
#define TRACKED(field) SET(s.tracking.field = uint32_t(v))

} // namespace

TEST(calc_sta_satisfaction, scores_each_factor_at_its_bounds)
{
    constexpr uint64_t u32 = UINT32_MAX, u64 = UINT64_MAX;
    const struct {
        int factor;
        change make;
        std::vector<std::pair<uint64_t, int>> points;
    } rows[] = {
        {phy, SET(rate(s, 4799, v)), {{1, 100}}},
        {phy, SET(rate(s, 4800, v)), {{0, 100}, {1, 0}, {999, 0}, {1000, 60}, {9999, 79}, {10000, 80}, {15000, 90}}},
        {phy, SET(rate(s, 5000, v)), {{20000, 92}, {25000, 95}, {29999, 99}, {30000, 100}}},
        {phy, SET(rate(s, 5001, v)), {{24999, 94}, {30000, 95}, {149999, 99}, {150000, 100}}},
        {phy, SET(rate(s, 5001, v)), {{42949673, 0}, {42949773, 0}, {42969673, 92}}}, // a product of 32 bits
        {phy, SET(rate(s, 5000, 20000); s.tx_eff_pct = uint32_t(v)), {{50, 80}, {75, 90}, {0, 0}}},
        {tcp, SET(latency(s, 0, v, 0, 0)), {{5000, 100}}},
        {tcp, SET(latency(s, 1, v, 0, 0)), {{99, 100}, {114, 100}, {115, 99}, {1614, 0}, {1615, -1}, {u64, -1}}},
        {tcp, SET(latency(s, 0, v, 1, 60)), {{54, 100}, {55, 99}, {u64, 100}}},
        {tcp, SET(latency(s, 1, v, 0, -1)), {{115, 100}, {116, 99}, {0, -1}}}, // 0 and -1 wrap
        {retries, SET(air(s, 11, 100, v, 0)), {{100, 100}, {101, 100}}},
        {retries, SET(air(s, 18, 29, v, 0)), {{29, 100}, {30, 0}}},
        {retries, SET(air(s, 18, 30, v, 0)), {{8, 100}, {30, 62}, {31, 0}}},
        // single precision makes 52 of 53 %
        {retries, SET(air(s, 17, 100, v, 0)), {{26, 100}, {27, 99}, {50, 88}, {53, 87}, {54, 86}, {100, 62}}},
        {retries, SET(air(s, 23, u64, v, 0)), {{u64, 62}, {u64 / 2, 88}}},
        {drops, SET(air(s, 18, 100, 0, v)), {{200, 100}}},
        {drops, SET(air(s, 23, 0, 0, v)), {{0, 100}, {1, 0}}},
        {drops, SET(air(s, 23, 1000, 0, v)), {{5, 100}, {6, 70}, {1000, 70}, {1001, 0}}},
        {drops, SET(air(s, 17, 10000, 0, v)), {{15, 100}, {16, 70}}},
        {ip, TRACKED(ip_obtained), {{0, 0}, {2, 100}}},
        {dhcp, asks, {{0, 100}, {10000, 0}, {10010, 100}, {10001, 100}, {2200, 100}, {2100, 0}, {100, 100}}},
        {dhcp, SET(asks(s, v); s.tracking.dhcp_retries = INT32_MIN), {{0, 0}}},
        {dhcp, TRACKED(dhcp_requests), {{9, 100}}},
        {arp, TRACKED(arp_answered), {{0, 0}, {2, 100}}},
        {dns, TRACKED(dns_timeouts), {{0, 100}, {9, 10}, {10, 0}, {11, 0}, {429496730, 0}, {u32, 0}}},
        {dns_time,
         TRACKED(dns_latency),
         {{0, 100}, {37, 99}, {38, 98}, {375, 90}, {1499, 60}, {u32 - 1, 60}, {u32, 100}}},
        {icmp, TRACKED(icmp_rtt), {{99, 100}, {114, 100}, {115, 99}, {1599, 1}, {1600, 0}, {u32, 0}}},
        {leaves, TRACKED(disconnects), {{0, 100}, {1, 100}, {2, 90}, {10, 10}, {11, 0}, {u32, 0}}},
    };
    libvexa_log_level = 0;
    for (const auto &row : rows)
        for (const auto &[value, score] : row.points) {
            EXPECT_EQ(subscore(row.factor, row.make, value), score) << row.factor << ": " << value;
            const int experimental = subscore(row.factor, row.make, value, &stainfo::satisfaction_exp);
            if (row.factor != drops) { // its curve has no bounds yet
                EXPECT_EQ(experimental, row.factor <= tcp ? -1 : score) << row.factor << ": " << value;
            }
        }
}

TEST(calc_sta_satisfaction, names_the_lowest_factor_and_all_weak_ones)
{
    stainfo sta = station(SET(rate(s, 5000, v); s.tracking.arp_answered = s.tracking.ip_obtained = 0), 1000);
    calc_sta_satisfaction(&sta);
    EXPECT_EQ(sta.satisfaction.score_now, 0);
    EXPECT_STREQ(reasons_bar_chart_keys[__builtin_ctz(sta.satisfaction.reason_now)], "sta_ip_timeout");
    EXPECT_STREQ(anomalies_bar_chart_keys[phy], "low_phy_rate");
    EXPECT_EQ(sta.satisfaction.anomalies_now, 0x302u);
    EXPECT_EQ(sta.satisfaction_exp.anomalies_now, 0x300u);
    sta.tracking.arp_answered = sta.tracking.ip_obtained = 1; // of a record that was not made anew
    sta.state = 0;
    {
        const failing_memory none{0};
        calc_sta_satisfaction(&sta);
        calc_sta_satisfaction_mov(&sta.satisfaction);
    }
    EXPECT_FALSE(failing_memory::has_failed());
    EXPECT_EQ(sta.satisfaction.score_now, 100);
    EXPECT_EQ(sta.satisfaction.reason_now, 0x100u);
    EXPECT_EQ(sta.satisfaction.anomalies_now, 0x302u);

    const captured_log log{2};
    subscore(drops, SET(air(s, 23, 3, 4, v)), 5);
#define WRONG(func, what)                                                                                              \
    "[warn ] satisfaction." func "(): Client satisfaction computation error: TX data " what                            \
    " is bigger than total TX tries=3.\n"
    EXPECT_EQ(log.text(), WRONG("calc_sta_retry_score", "retries=4") WRONG("calc_sta_drop_score", "drops=5")
                              WRONG("calc_sta_drop_score_exp", "drops=5"));
}

TEST(sat_xretry, follows_what_the_host_writes)
{
    sat_xretry_penalty_thrs[0] = {18, 50};
    EXPECT_EQ(subscore(drops, SET(air(s, 18, 2, 0, v)), 1), 70);
    EXPECT_EQ(subscore(drops, SET(air(s, 23, 2, 0, v)), 1), 100);
    const change per_mille = SET(air(s, 17, 1000, 0, v));
    const auto score = [&](uint64_t v) { return subscore(drops, per_mille, v, &stainfo::satisfaction_exp); };
    EXPECT_EQ(score(0), 100);
    vexa_xretry_segment *segments = sat_xretry_metric_ranges[1].segments;
    constexpr uint32_t bounds[][2] = {{1, 2}, {2, 4}, {5, 5}, {6, 10}, {10, 20}};
    for (size_t i = 0; i < 5; i++) {
        segments[i].lower = bounds[i][0];
        segments[i].upper = bounds[i][1];
    }
    for (const auto &[v, expected] : std::initializer_list<std::pair<uint64_t, int>>{
             {0, 100}, {10, 100}, {15, 98}, {20, 97}, {40, 92}, {45, 0}, {50, 92}, {80, 77}, {200, 40}, {201, 0}})
        EXPECT_EQ(score(v), expected) << v;
    segments[0] = {UINT32_MAX, UINT32_MAX, 0, 100};
    EXPECT_EQ(score(500), 100);
}

TEST(calc_sta_satisfaction, holds_its_promises_for_any_station)
{
    static std::mt19937 random{20};
    static const auto up_to = [](uint64_t most) { return uint32_t(random() % (most + 1)); };
    const change worsen[] = {
        SET(s.tx_rate_mov = (s.tx_rate_mov + 1) / 2),
        SET(s.rx_tcp_stats.lat.average = std::min(s.rx_tcp_stats.lat.average + 9, 1614)),
        SET(s.tx_retries_mov += 3),
        SET(s.wifi_tx_dropped_mov += 2),
        SET(s.tracking.ip_obtained = 0),
        SET(s.tracking.arp_answered = 0),
        SET(s.tracking.dns_timeouts++),
        SET(s.tracking.dns_latency += s.tracking.dns_latency < 9999 ? 20 : 0),
        SET(s.tracking.icmp_rtt += 20),
        SET(s.tracking.dhcp_requests++),
        SET(s.tracking.disconnects++),
    };
    const change any = [](stainfo &s, uint64_t) {
        constexpr uint32_t modes[] = {11, 17, 18, 23};
        rate(s, uint16_t(4700 + up_to(400)), up_to(3) ? up_to(200'000) : 0);
        latency(s, int(up_to(1)), up_to(400), int(up_to(1)), 0);
        const uint32_t attempts = up_to(200);
        air(s, modes[up_to(3)], attempts, up_to(attempts) / (up_to(3) + 1), up_to(3) ? 0 : up_to(2));
        s.tracking.arp_answered = up_to(9);
        s.tracking.dns_timeouts = up_to(1) * up_to(12);
        s.tracking.dns_latency = up_to(1) ? UINT32_MAX : up_to(1600);
        s.tracking.icmp_rtt = up_to(300);
        s.tracking.disconnects = up_to(3);
        if (up_to(9) == 0)
            asks(s, up_to(99999));
    };
    libvexa_log_level = 0;
    for (int i = 0; i < 20'000; i++) {
        stainfo sta = station(any, 0), worse = sta;
        const uint32_t how = up_to(std::size(worsen) - 1);
        worsen[how](worse, 0);
        calc_sta_satisfaction(&sta);
        calc_sta_satisfaction(&worse);
        for (const auto set : {&stainfo::satisfaction, &stainfo::satisfaction_exp}) {
            const vexa_score &score = sta.*set;
            int lowest = 101;
            uint32_t weak = 0;
            for (int f = 0; f < VEXA_FACTORS; f++) {
                const int sub = score.subscores_now[f];
                ASSERT_TRUE(sub >= -1 && sub <= 100) << i << ": " << f;
                lowest = sub < 0 ? lowest : std::min(lowest, sub);
                weak |= uint32_t(sub >= 0 && sub < 80) << f;
            }
            ASSERT_EQ(score.score_now, lowest) << i;
            ASSERT_EQ(score.anomalies_now, weak) << i;
            ASSERT_TRUE(lowest == 100 ? score.reason_now == 0
                                      : score.subscores_now[__builtin_ctz(score.reason_now)] == lowest)
                << i;
            ASSERT_LE((worse.*set).score_now, score.score_now) << i << ": " << how;
        }
    }
}

TEST(calc_sta_satisfaction_mov, averages_what_was_scored)
{
    const struct {
        int factor, now, history[VEXA_SCORE_HISTORY], score;
    } rows[] = {
        {icmp, -1, {-1, -1, -1, -1}, -1},   {icmp, 100, {-1, -1, -1, -1}, 100}, {icmp, 99, {100, -1, -1, -1}, 99},
        {icmp, 0, {100, 0, -1, 100}, 50},   {icmp, -1, {0, 1, -1, -1}, 0},      {icmp, 100, {99, 0, 0, -1}, 49},
        {arp, 0, {100, 100, 100, 100}, 0},  {arp, 100, {0, 0, 0, 0}, 100},      {dns, 50, {0, 99, -1, -1}, 74},
        {ip, -1, {0, 100, -1, -1}, 100},    {dns, -1, {0, 0, 0, 0}, -1},        {dhcp, 0, {100, 100, -1, -1}, 66},
        {tcp, 80, {79, -1, -1, -1}, 79},    {phy, 100, {100, 99, -1, -1}, 99},  {arp, 100, {1, 0, 0, 0}, 50},
        {drops, 99, {99, 99, 99, 100}, 99}, {icmp, 80, {80, 80, 80, 80}, 80},
    };
    for (const auto &row : rows) {
        vexa_score score{};
        memset(score.subscores_now, -1, sizeof score.subscores_now);
        memset(score.history, -1, sizeof score.history);
        score.subscores_now[row.factor] = row.now;
        for (size_t i = 0; i < VEXA_SCORE_HISTORY; i++)
            score.history[i][row.factor] = row.history[i];
        score.reason = score.anomalies = 0xffff; // of the cycle before
        calc_sta_satisfaction_mov(&score);
        EXPECT_EQ(score.score_real, row.score) << "row " << &row - rows;
        EXPECT_EQ(score.reason, row.score < 0 || row.score > 99 ? 0 : 1u << row.factor) << "row " << &row - rows;
        EXPECT_EQ(score.anomalies, row.score < 0 || row.score > 79 ? 0 : 1u << row.factor) << "row " << &row - rows;
    }
    vexa_score tie{};
    tie.subscores_now[tcp] = tie.subscores_now[arp] = 1;
    calc_sta_satisfaction_mov(&tie); // zeros in all the others
    EXPECT_EQ(tie.reason, 1u);
    EXPECT_EQ(tie.anomalies, 0xffffu);
}
