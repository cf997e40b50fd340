// SPDX-License-Identifier: MIT
#include "tests/support/captured_log.h"
#include "tests/support/device.h"
#include "tests/support/failing_memory.h"

#include <cstring>
#include <random>

namespace {

enum { phy = 1, tcp = 3, retries = 4, ip = 8, arp, dns, dns_time, icmp, leaves, dhcp, drops };
constexpr int order[] = {phy, tcp, retries, ip, dhcp, arp, dns, dns_time, icmp, leaves, drops};

using change = void (*)(stainfo &, uint64_t);
#define SET(...) [](stainfo &s, [[maybe_unused]] uint64_t v) { __VA_ARGS__; }
#define TRACKED(field) SET(s.tracking.field = uint32_t(v))
#define LATENCY(rx_count, rx, tx_count, tx)                                                                            \
    SET(s.rx_tcp_stats.lat = {0, rx_count, int32_t(rx)}; s.tx_tcp_stats.lat = {0, tx_count, tx})
#define AIR(mode, attempts, retried, dropped)                                                                          \
    SET(s.tracking.radio_mode = mode; s.wifi_tx_attempts_mov = attempts; s.tx_retries_mov = retried;                   \
        s.wifi_tx_dropped_mov = (dropped))
#define RATE(at, kbps) SET(s.state = at; s.tx_rate_mov = uint32_t(kbps))
#define ASKS(field) SET(s.tracking.ip_obtained = 0; s.tracking.field; s.tracking.dhcp_acks = uint32_t(v))

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

} // namespace

TEST(calc_sta_satisfaction, scores_each_factor_at_its_bounds)
{
    constexpr uint64_t u32 = UINT32_MAX, u64 = UINT64_MAX;
    const struct {
        int factor;
        change make;
        std::vector<std::pair<uint64_t, int>> points;
    } rows[] = {
        {phy, SET(s.state = uint16_t(v); s.tx_rate_mov = 1), {{4799, 100}, {4800, 0}}},
        {phy, RATE(4800, v), {{0, 100}, {999, 0}, {1000, 60}, {9999, 79}, {10000, 80}, {15000, 90}}},
        {phy, RATE(5000, v), {{20000, 92}, {25000, 95}, {29999, 99}, {30000, 100}}},
        {phy, RATE(5001, v), {{24999, 94}, {30000, 95}, {149999, 99}, {150000, 100}, {42969673, 92}}}, // it wraps
        {phy, SET(s.state = 5000; s.tx_rate_mov = 20000; s.tx_eff_pct = uint32_t(v)), {{50, 80}, {75, 90}, {0, 0}}},
        {tcp, LATENCY(0, v, 0, 0), {{5000, 100}}},
        {tcp, LATENCY(1, v, 0, 0), {{99, 100}, {114, 100}, {115, 99}, {1614, 0}, {1615, -1}, {u64, -1}}},
        {tcp, LATENCY(0, v, 1, 60), {{54, 100}, {55, 99}, {u64, 100}}},
        {tcp, LATENCY(1, v, 0, -1), {{115, 100}, {116, 99}, {0, -1}}}, // 0 and -1 wrap
        {retries, AIR(11, 100, v, 0), {{100, 100}, {101, 100}}},
        {retries, AIR(18, 29, v, 0), {{29, 100}, {30, 0}}},
        {retries, AIR(18, 30, v, 0), {{8, 100}, {30, 62}, {31, 0}}},
        {retries, AIR(17, 100, v, 0), {{26, 100}, {27, 99}, {53, 87}, {54, 86}, {100, 62}}}, // as a float 53 % is 52
        {retries, AIR(23, u64, v, 0), {{u64, 62}, {u64 / 2, 88}}},
        {drops, AIR(18, 100, 0, v), {{200, 100}}},
        {drops, AIR(23, 0, 0, v), {{0, 100}, {1, 0}}},
        {drops, AIR(23, 1000, 0, v), {{5, 100}, {6, 70}, {1000, 70}, {1001, 0}}},
        {drops, AIR(17, 10000, 0, v), {{15, 100}, {16, 70}}},
        {ip, TRACKED(ip_obtained), {{0, 0}, {2, 100}}},
        {dhcp, ASKS(dhcp_requests = 1), {{0, 0}, {1, 100}}},
        {dhcp, ASKS(dhcp_offers = 1; s.tracking.dhcp_requests = 1), {{0, 100}}},
        {dhcp, ASKS(dhcp_difference = 1), {{0, 0}, {1, 100}}},
        {dhcp, ASKS(dhcp_retries = -1), {{0, 0}}},
        {dhcp, ASKS(dhcp_difference = s.tracking.dhcp_retries = 1), {{0, 100}}},
        {dhcp, TRACKED(dhcp_requests), {{9, 100}}},
        {arp, TRACKED(arp_answered), {{0, 0}, {2, 100}}},
        {dns, TRACKED(dns_timeouts), {{0, 100}, {9, 10}, {10, 0}, {429496730, 0}, {u32, 0}}},
        {dns_time, TRACKED(dns_latency), {{0, 100}, {37, 99}, {38, 98}, {375, 90}, {1499, 60}, {u32 - 1, 60}}},
        {icmp, TRACKED(icmp_rtt), {{99, 100}, {114, 100}, {115, 99}, {1599, 1}, {1600, 0}, {u32, 0}}},
        {leaves, TRACKED(disconnects), {{0, 100}, {1, 100}, {2, 90}, {10, 10}, {11, 0}, {u32, 0}}},
    };
    libvexa_log_level = 0;
    for (const auto &row : rows)
        for (const auto &[value, score] : row.points) {
            EXPECT_EQ(subscore(row.factor, row.make, value), score) << row.factor << ": " << value;
            if (row.factor != drops) { // its other curve has no bounds yet
                EXPECT_EQ(subscore(row.factor, row.make, value, &stainfo::satisfaction_exp),
                          row.factor <= tcp ? -1 : score)
                    << row.factor << ": " << value;
            }
        }
}

TEST(calc_sta_satisfaction, adds_to_a_record_and_complains_of_its_counters)
{
    stainfo sta = station(TRACKED(arp_answered), 0);
    calc_sta_satisfaction(&sta);
    EXPECT_STREQ(reasons_bar_chart_keys[__builtin_ctz(sta.satisfaction.reason_now)], "sta_arp_timeout");
    EXPECT_STREQ(anomalies_bar_chart_keys[phy], "low_phy_rate");
    sta.tracking.arp_answered = 1;
    {
        const failing_memory none{0};
        calc_sta_satisfaction(&sta);
        calc_sta_satisfaction_mov(&sta.satisfaction);
    }
    EXPECT_FALSE(failing_memory::has_failed());
    EXPECT_EQ(sta.satisfaction.score_now, 100);
    EXPECT_EQ(sta.satisfaction.reason_now & sta.satisfaction.anomalies_now, 1u << arp);
    const captured_log log{2};
    subscore(drops, AIR(23, 3, 4, v), 5);
#define WRONG(func, what)                                                                                              \
    "[warn ] satisfaction." func "(): Client satisfaction computation error: TX data " what                            \
    " is bigger than total TX tries=3.\n"
    EXPECT_EQ(log.text(), WRONG("calc_sta_retry_score", "retries=4") WRONG("calc_sta_drop_score", "drops=5")
                              WRONG("calc_sta_drop_score_exp", "drops=5"));
}

TEST(sat_xretry, follows_what_the_host_writes)
{
    sat_xretry_penalty_thrs[0] = {18, 50};
    EXPECT_EQ(subscore(drops, AIR(18, 2, 0, v), 1), 70);
    EXPECT_EQ(subscore(drops, AIR(23, 2, 0, v), 1), 100);
    const auto score = [](uint64_t x) { return subscore(drops, AIR(17, 1000, 0, v), x, &stainfo::satisfaction_exp); };
    EXPECT_EQ(score(0), 100);
    EXPECT_EQ(score(1), 0);
    constexpr uint32_t bounds[][2] = {{1, 2}, {2, 4}, {5, 5}, {6, 10}, {10, 20}};
    for (size_t i = 0; i < 5; i++) {
        sat_xretry_metric_ranges[1].segments[i].lower = bounds[i][0];
        sat_xretry_metric_ranges[1].segments[i].upper = bounds[i][1];
    }
    const std::pair<uint64_t, int> points[] = {{0, 100}, {10, 100}, {15, 98}, {20, 97},  {40, 92},
                                               {45, 0},  {50, 92},  {80, 77}, {200, 40}, {201, 0}};
    for (const auto &[v, expected] : points)
        EXPECT_EQ(score(v), expected) << v;
    sat_xretry_metric_ranges[1].segments[0] = {UINT32_MAX, UINT32_MAX, 0, 100};
    EXPECT_EQ(score(500), 100);
    sat_xretry_metric_ranges[1].segments[0] = {60, 140, 0, 100};
    EXPECT_EQ(score(500), 100);
    EXPECT_EQ(score(750), 80) << "what is above 100 is cut at the end";
}

TEST(calc_sta_satisfaction, holds_its_promises_for_any_station)
{
    static std::mt19937 random{20};
    static const auto up_to = [](uint64_t most) { return uint32_t(random() % (most + 1)); };
#define T(how) SET(s.tracking.how)
    const change worsen[] = {SET(s.tx_rate_mov -= s.tx_rate_mov > 1),
                             SET(s.tx_retries_mov += 3),
                             SET(s.wifi_tx_dropped_mov += 2),
                             SET(s.rx_tcp_stats.lat.average += 9),
                             T(dns_latency += 20),
                             T(ip_obtained = 0),
                             T(arp_answered = 0),
                             T(dns_timeouts++),
                             T(icmp_rtt += 20),
                             T(dhcp_requests++),
                             T(disconnects++)};
    const change any = SET(
        constexpr uint32_t modes[] = {11, 17, 18, 23}; const uint32_t attempts = up_to(200); auto &t = s.tracking;
        s.state = uint16_t(4700 + up_to(400)); s.tx_rate_mov = up_to(3) ? up_to(200'000) : 0; s.tx_eff_pct = up_to(100);
        s.rx_tcp_stats.lat = {0, up_to(1), int32_t(up_to(400))}; s.wifi_tx_attempts_mov = attempts;
        s.tx_retries_mov = up_to(attempts) / (up_to(3) + 1); s.wifi_tx_dropped_mov = up_to(3) ? 0 : up_to(2);
        t = {modes[up_to(3)], up_to(9), up_to(9), up_to(1) * up_to(12), up_to(1) ? UINT32_MAX : up_to(1600), up_to(300),
             up_to(1), int32_t(up_to(2)), int32_t(up_to(2)), up_to(1), up_to(1), up_to(3)});
    libvexa_log_level = 0;
    for (int i = 0; i < 20'000; i++) {
        stainfo sta = station(any, 0), worse = sta;
        const uint32_t how = up_to(std::size(worsen) - 1);
        worsen[how](worse, 0);
        calc_sta_satisfaction(&sta);
        calc_sta_satisfaction(&worse);
        for (const auto set : {&stainfo::satisfaction, &stainfo::satisfaction_exp}) {
            const vexa_score &score = sta.*set;
            int lowest = 100;
            uint32_t reason = 0, weak = 0;
            for (const int f : order) {
                const int sub = score.subscores_now[f];
                ASSERT_TRUE(sub >= -1 && sub <= 100) << i << ": " << f;
                reason = sub >= 0 && sub < lowest ? 1u << f : reason;
                lowest = sub < 0 ? lowest : std::min(lowest, sub);
                weak |= uint32_t(sub >= 0 && sub < 80) << f;
            }
            ASSERT_EQ(score.score_now, lowest) << i;
            ASSERT_EQ(score.reason_now, reason) << i;
            ASSERT_EQ(score.anomalies_now, weak) << i;
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
        {drops, 99, {99, 99, 99, 100}, 99}, {icmp, 80, {80, 80, 80, 80}, 80},   {tcp, 80, {79, -1, -1, -1}, 79}};
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
}
