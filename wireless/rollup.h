// SPDX-License-Identifier: MIT
#pragma once

#include "core/list.h"

// Visits the entries of a list that stays as it is.
template <typename Entry>
void for_each_entry(const vexa_list &head, auto &&visit)
{
    for (vexa_list *link = head.next; link != &head; link = link->next)
        visit(*entry_of<Entry>(link));
}

void for_each_valid_station(const vexa_vap &vap, auto &&visit)
{
    if (vap.stations)
        for_each_entry<stainfo>(*vap.stations, [&](stainfo &sta) {
            if (sta.valid)
                visit(sta);
        });
}

struct weighted_sum {
    int64_t sum = 0;
    uint64_t stations = 0;
};

// Scores of VAPs times their stations: of those of a radio, or without one of all.
weighted_sum weigh(const vexa_list &vaps, int32_t vexa_vap::*score, const vexa_radio *radio);
