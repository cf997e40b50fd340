// SPDX-License-Identifier: MIT
#pragma once

#include <libvexa.h>
#include <memory>
#include <string>

// The library's lists of stations and networks.

struct drop_stations {
    void operator()(vexa_list *stations) const noexcept { free_stalist(stations); }
};
using station_list = std::unique_ptr<vexa_list, drop_stations>;

// Nothing when there is no answer about an interface, whose name is then added to those before.
inline station_list stations_of(const char *vap, std::string &silent)
{
    station_list found{get_stalist(vap)};
    if (!found)
        silent += (silent.empty() ? "" : ", ") + std::string{vap};
    return found;
}

struct drop_networks {
    void operator()(vexa_list *networks) const noexcept { free_scanlist(networks); }
};
using network_list = std::unique_ptr<vexa_list, drop_networks>;

// An entry begins with its links; nullptr is an empty list.
template <typename Entry, typename Take>
void for_each(const vexa_list *head, Take take)
{
    for (vexa_list *link = head ? head->next : nullptr; link && link != head; link = link->next)
        take(*reinterpret_cast<Entry *>(link));
}

inline void append(vexa_list &head, vexa_list &links)
{
    links = {&head, head.prev};
    head.prev = head.prev->next = &links;
}
