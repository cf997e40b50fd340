// SPDX-License-Identifier: MIT
#include "tests/support/device.h"

#include <cstring>

namespace {

void append(vexa_list &head, vexa_list &links)
{
    if (!head.next)
        head.next = head.prev = &head;
    links = {&head, head.prev};
    head.prev = head.prev->next = &links;
}

struct client {
    int score, before = -1; // and one sample of history
    bool valid = true, skipped = false;
};

// A VAP whose clients are scored by their round trips alone.
struct vap_of : vexa_vap {
    vap_of(vexa_ap &ap, const char *radio_name, std::vector<client> clients, int metric)
        : vexa_vap{}, records(clients.size())
    {
        memcpy(radio, radio_name, strlen(radio_name));
        stations = &list;
        station_count = uint32_t(clients.size());
        std::fill(std::begin(metrics), std::end(metrics), metric);
        for (size_t i = 0; i < clients.size(); i++) {
            stainfo &sta = records[i];
            sta.valid = clients[i].valid;
            sta.skip_satisfaction = clients[i].skipped;
            memset(sta.satisfaction.subscores_now, -1, sizeof sta.satisfaction.subscores_now);
            memset(sta.satisfaction.history, -1, sizeof sta.satisfaction.history);
            sta.satisfaction.score_now = sta.satisfaction.subscores_now[12] = clients[i].score;
            sta.satisfaction.history[0][12] = clients[i].before;
            append(list, sta.links);
        }
        append(ap.vaps, links);
    }
    vexa_list list{&list, &list};
    std::vector<stainfo> records;
};

using numbers = std::vector<int>;

} // namespace

TEST(roll_ups, weigh_each_station_once)
{
    vexa_ap ap{};
    vexa_radio near{{}, "ra0", -7, -7}, far{{}, "rai0", -7, -7}, idle{{}, "ra", -7, -7};
    for (vexa_radio *radio : {&near, &far, &idle})
        append(ap.radios, radio->links);
    // a skipped, a stale and an unscored station count, but add nothing
    vap_of a{ap, "ra0", {{100, 50}, {81}, {10, -1, true, true}, {10, -1, false}, {-1}}, 10}, b{ap, "ra0", {{99}}, -1};
    vap_of c{ap, "rai0", {{70}, {71, 72}}, 41}, empty{ap, "rai0", {}, 1000}, unscored{ap, "rai0", {{-1}}, 41};
    for (vexa_vap *vap : {&a, &b, &c, &empty, &unscored})
        EXPECT_EQ(calc_vap_satisfaction(vap), vap);
    EXPECT_EQ((numbers{a.score, b.score, c.score, empty.score, unscored.score}), (numbers{36, 99, 70, -1, 0}));
    for (vexa_radio *radio : {&near, &far, &idle})
        EXPECT_EQ(calc_radio_satisfaction(radio, &ap.vaps), radio);
    EXPECT_EQ((numbers{near.score, far.score, idle.score}), (numbers{(5 * 36 + 99) / 6, 2 * 70 / 3, -1}));
    EXPECT_EQ(calc_ap_satisfaction(&ap)->score, (5 * 36 + 99 + 2 * 70) / 9);

    a.anomalies[0] = 9;
    ap.metrics[VEXA_METRIC_SIGNAL] = {9, 9, 9};
    calc_satisfaction_mov(&ap);
    const int a_mov = (75 + 81 - 1) / 5; // what is not scored takes 1 away
    EXPECT_EQ((numbers{a.score_mov, b.score_mov, c.score_mov, empty.score_mov}), (numbers{a_mov, 99, 70, -1}));
    EXPECT_EQ(a.records[2].satisfaction.score_real, -1);
    const uint32_t counts[] = {a.anomalies[0], a.anomalies[12], a.reasons[12], c.anomalies[12], c.reasons[0]};
    EXPECT_THAT(counts, testing::ElementsAre(0, 1, 2, 2, 0));
    EXPECT_EQ((numbers{near.score_mov, far.score_mov, idle.score_mov}),
              (numbers{(5 * a_mov + 99) / 6, (2 * 70 - 1) / 3, -1}));
    EXPECT_EQ(ap.score_mov, (5 * a_mov + 99 + 2 * 70 - 1) / 9);
    EXPECT_EQ(ap.station_count, 9u);
    EXPECT_EQ(ap.metrics[VEXA_METRIC_SIGNAL].average, 22); // (5 * 10 + 3 * 41) / 8, rounded
    ap.vaps = {&ap.vaps, &ap.vaps};
    ap.radios = {&ap.radios, &ap.radios};
    calc_satisfaction_mov(calc_ap_satisfaction(&ap));
    EXPECT_EQ((numbers{ap.score, ap.score_mov, ap.metrics[0].average}), (numbers{-1, -1, -1}));
}

TEST(averages, round_halves_away_from_zero_and_stay_in_range)
{
    const int64_t rows[][3] = {{5, 2, 3},   {-5, 2, -3}, {4, 3, 1}, {-4, 3, -1},
                               {-7, 3, -2}, {-8, 3, -3}, {7, 0, 0}, {INT64_MAX, 2, int64_t{1} << 62}};
    for (const auto &[sum, count, mean] : rows)
        EXPECT_EQ(vexa_avg_round(sum, count), mean) << sum << " / " << count;
    const uint64_t values[] = {1, 2, UINT64_MAX, UINT64_MAX};
    EXPECT_EQ(vexa_avg_array(values, 2), 2u);
    EXPECT_EQ(vexa_avg_array(values + 2, 2), UINT64_MAX);
    EXPECT_EQ(vexa_avg_array(values, 0), 0u);
    vexa_avg avg{};
    vexa_avg_increment_sum_weighted(&avg, -1, 5);
    EXPECT_EQ(vexa_avg_compute(&avg, -7), -7);
    vexa_avg_increment_sum_weighted(&avg, 10, 3);
    vexa_avg_increment(&avg, {-45, 1});
    EXPECT_EQ(vexa_avg_compute(&avg, -1), -4);
    vexa_avg_increment(&avg, {INT64_MAX, 0});
    vexa_avg_increment(&avg, {INT64_MAX, 0});
    EXPECT_EQ(vexa_avg_compute(&avg, -1), INT32_MAX);
}

TEST(vexa_remove_outliers, keeps_what_is_within_three_deviations)
{
    const struct {
        std::vector<int64_t> values, kept;
        int result;
        int64_t mean;
    } rows[] = {
        {{}, {}, -1, -7},
        {{7}, {7}, 0, 7},
        {{1, 2, 1, 2}, {1, 2, 1, 2}, 0, 2}, // the deviation is 0
        {{0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 1000, 5}, {0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 5}, 0, 84},
    };
    for (const auto &row : rows) {
        std::vector<int64_t> values = row.values;
        size_t count = values.size();
        int64_t mean = -7;
        EXPECT_EQ(vexa_remove_outliers(values.data(), &mean, &count), row.result);
        values.resize(count);
        EXPECT_EQ(values, row.kept);
        EXPECT_EQ(mean, row.mean);
    }
}
