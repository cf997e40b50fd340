// SPDX-License-Identifier: MIT
#include "rollup.h"

#include <algorithm>

namespace {

// In whole numbers; -1 without stations.
int32_t score_of(const weighted_sum &w)
{
    return w.stations == 0 ? -1 : int32_t(std::min<int64_t>(w.sum / int64_t(w.stations), 100));
}

void clear_moving_score(vexa_score &score)
{
    score.score_real = -1;
    score.reason = 0;
    score.anomalies = 0;
}

void count_bits(uint32_t (&counters)[VEXA_FACTORS], uint32_t mask)
{
    for (size_t i = 0; i < VEXA_FACTORS; i++)
        counters[i] += mask >> i & 1;
}

void score_vap(vexa_vap &vap)
{
    std::ranges::fill(vap.anomalies, 0);
    std::ranges::fill(vap.reasons, 0);
    weighted_sum all{0, vap.station_count};
    for_each_valid_station(vap, [&](stainfo &sta) {
        if (sta.skip_satisfaction) {
            clear_moving_score(sta.satisfaction);
            clear_moving_score(sta.satisfaction_exp);
            return;
        }
        calc_sta_satisfaction_mov(&sta.satisfaction);
        calc_sta_satisfaction_mov(&sta.satisfaction_exp);
        count_bits(vap.anomalies, sta.satisfaction.anomalies);
        count_bits(vap.reasons, sta.satisfaction.reason);
        all.sum += sta.satisfaction.score_real;
    });
    vap.score_mov = score_of(all);
}

void gather_metrics(vexa_ap &ap)
{
    std::ranges::fill(ap.metrics, vexa_avg{});
    for_each_entry<vexa_vap>(ap.vaps, [&](const vexa_vap &vap) {
        for (size_t i = 0; i < VEXA_METRICS; i++)
            vexa_avg_increment_sum_weighted(&ap.metrics[i], vap.metrics[i], int32_t(vap.station_count));
    });
    for (vexa_avg &metric : ap.metrics)
        (void)vexa_avg_compute(&metric, -1);
}

} // namespace

extern "C" void calc_satisfaction_mov(vexa_ap *ap)
{
    for_each_entry<vexa_vap>(ap->vaps, score_vap);
    for_each_entry<vexa_radio>(ap->radios, [&](vexa_radio &radio) {
        radio.score_mov = score_of(weigh(ap->vaps, &vexa_vap::score_mov, &radio));
    });
    const weighted_sum all = weigh(ap->vaps, &vexa_vap::score_mov, nullptr);
    ap->station_count = uint32_t(all.stations);
    ap->score_mov = score_of(all);
    gather_metrics(*ap);
}
