// SPDX-License-Identifier: MIT
#include "rollup.h"

#include <algorithm>
#include <cstring>

namespace {

// In single precision; -1 without stations.
int32_t score_of(const weighted_sum &w)
{
    return w.stations == 0 ? -1 : int32_t(std::min(float(w.sum) / float(w.stations), 100.0F));
}

} // namespace

weighted_sum weigh(const vexa_list &vaps, int32_t vexa_vap::*score, const vexa_radio *radio)
{
    weighted_sum all;
    for_each_entry<vexa_vap>(vaps, [&](const vexa_vap &vap) {
        if (radio && strncmp(vap.radio, radio->name, sizeof radio->name) != 0)
            return;
        all.sum += int64_t{vap.*score} * vap.station_count;
        all.stations += vap.station_count;
    });
    return all;
}

extern "C" vexa_vap *calc_vap_satisfaction(vexa_vap *vap)
{
    weighted_sum all{0, vap->station_count};
    for_each_valid_station(*vap, [&](const stainfo &sta) {
        if (!sta.skip_satisfaction && sta.satisfaction.score_now >= 0)
            all.sum += sta.satisfaction.score_now;
    });
    vap->score = score_of(all);
    return vap;
}

extern "C" vexa_radio *calc_radio_satisfaction(vexa_radio *radio, const vexa_list *vaps)
{
    radio->score = score_of(weigh(*vaps, &vexa_vap::score, radio));
    return radio;
}

extern "C" vexa_ap *calc_ap_satisfaction(vexa_ap *ap)
{
    ap->score = score_of(weigh(ap->vaps, &vexa_vap::score, nullptr));
    return ap;
}
