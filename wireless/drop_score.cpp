// SPDX-License-Identifier: MIT
#include "core/log.h"
#include "factor.h"
#include "percent.h"

#include <algorithm>

extern "C" {
vexa_xretry_penalty sat_xretry_penalty_thrs[2] = {{23, 0.6F}, {17, 0.16F}};

// The scores stand, the bounds are the host's to write.
vexa_xretry_range sat_xretry_metric_ranges[2] = {
    {23, {{97, 100, 0, 0}, {92, 97, 0, 0}, {85, 92, 0, 0}, {70, 85, 0, 0}, {40, 70, 0, 0}}},
    {17, {{97, 100, 0, 0}, {92, 97, 0, 0}, {85, 92, 0, 0}, {70, 85, 0, 0}, {40, 70, 0, 0}}},
};
}
static_assert(sizeof(vexa_xretry_penalty) == 8 && sizeof(vexa_xretry_range) == 84);

namespace {

constexpr char log_tag[] = "satisfaction";

template <typename Row, size_t rows>
const Row *row_of(const Row (&table)[rows], const stainfo &sta)
{
    for (const Row &row : table)
        if (row.radio_mode == sta.tracking.radio_mode)
            return &row;
    return nullptr;
}

bool more_than_attempts(const char *func, const stainfo &sta)
{
    if (sta.wifi_tx_dropped_mov <= sta.wifi_tx_attempts_mov)
        return false;
    log_warn_as(func, "Client satisfaction computation error: TX data drops=%lu is bigger than total TX tries=%lu.",
                static_cast<unsigned long>(sta.wifi_tx_dropped_mov),
                static_cast<unsigned long>(sta.wifi_tx_attempts_mov));
    return true;
}

// The host may have written any number: above 100 they are all the same.
int bounded(float score)
{
    return int(std::min(score, 100.0F));
}

// Falls from the lower bound to the upper one; a segment without width is its lower bound.
int score_within(const vexa_xretry_segment &s, float percent)
{
    const float lower = float(s.lower), upper = float(s.upper);
    const float t = upper > lower ? (percent - lower) / (upper - lower) : 0;
    return bounded(float(s.score_at_upper) * t + float(s.score_at_lower) * (1 - t));
}

} // namespace

int calc_sta_drop_score(const stainfo &sta)
{
    const vexa_xretry_penalty *row = row_of(sat_xretry_penalty_thrs, sta);
    if (!row)
        return 100;
    if (more_than_attempts(__func__, sta))
        return 0;
    return percent_of(sta.wifi_tx_dropped_mov, sta.wifi_tx_attempts_mov) >= row->threshold ? 70 : 100;
}

int calc_sta_drop_score_exp(const stainfo &sta)
{
    const vexa_xretry_range *row = row_of(sat_xretry_metric_ranges, sta);
    if (!row)
        return 100;
    if (more_than_attempts(__func__, sta))
        return 0;
    const float percent = percent_of(sta.wifi_tx_dropped_mov, sta.wifi_tx_attempts_mov);
    if (percent <= float(row->segments[0].lower))
        return bounded(float(row->segments[0].score_at_lower));
    for (const vexa_xretry_segment &s : row->segments)
        if (percent >= float(s.lower) && percent <= float(s.upper))
            return score_within(s, percent);
    return 0;
}
