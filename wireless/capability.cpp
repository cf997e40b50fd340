// SPDX-License-Identifier: MIT
#include <algorithm>
#include <iterator>
#include <libvexa.h>

namespace {

constexpr uint32_t base = 0x17ebedd;
constexpr uint32_t steering_base = 0x17fbecd;
constexpr int wireless_uplink = 2;

// By system id.
constexpr uint16_t steering[] = {0xa612, 0xa620, 0xa640, 0xa642, 0xa643};
constexpr uint16_t without_airtime_fairness[] = {0xa610, 0xa613, 0xa634};
constexpr uint16_t with_zero_wait_dfs[] = {0xa620, 0xa642};
constexpr uint16_t with_spectrum_scan[] = {0xa612, 0xa620, 0xa642, 0xa643};

bool is_in(const auto &list, uint16_t system_id)
{
    return std::ranges::find(list, system_id) != std::end(list);
}

// The chains of the radio that clients meet first.
bool has_even_chains(const board &b)
{
    const uint8_t chains = b.radio_count > 0 ? b.radios[0].tx_chains : 0;
    return chains == 2 || chains == 4;
}

} // namespace

extern "C" uint32_t get_wifi_cap(void)
{
    const board *b = board_identify();
    uint32_t mask = is_in(steering, b->system_id) ? steering_base : base;
    if (is_in(without_airtime_fairness, b->system_id))
        mask &= ~VEXA_WIFI_CAP_AIRTIME_FAIRNESS;
    if (is_in(with_zero_wait_dfs, b->system_id))
        mask |= VEXA_WIFI_CAP_ZERO_WAIT_DFS;
    if (get_wireless_uplink_state() == wireless_uplink)
        mask &= ~VEXA_WIFI_CAP_DFS_MASTER;
    if ((is_zel6() || is_zel5()) && has_even_chains(*b))
        mask |= VEXA_WIFI_CAP_EVEN_CHAINS;
    if (is_in(with_spectrum_scan, b->system_id))
        mask |= VEXA_WIFI_CAP_SPECTRUM_SCAN;
    return mask;
}
