// SPDX-License-Identifier: MIT
#pragma once

#include <libvexa.h>
#include <span>

// What a station is scored by; the numbers are those of the bits and of the tables of names.
enum factor : uint8_t {
    factor_signal,
    factor_phy_rate,
    factor_tcp_packet_loss,
    factor_tcp_latency,
    factor_wifi_retries,
    factor_stream_efficiency,
    factor_sleepy_client,
    factor_wifi_latency,
    factor_ip_timeout,
    factor_arp_timeout,
    factor_dns_timeout,
    factor_dns_latency,
    factor_icmp_rtt,
    factor_disconnects,
    factor_dhcp,
    factor_wifi_drops,
};

constexpr uint32_t bit_of(size_t factor)
{
    return uint32_t{1} << factor;
}

// 0 to 100, below that not scored
using factor_score = int(const stainfo &);

struct scored_factor {
    factor which;
    factor_score *standard;
    factor_score *experimental; // null: not in that set
};

// in the order in which they are looked at
std::span<const scored_factor> scored_factors();

// They log under their names.
factor_score calc_sta_retry_score, calc_sta_drop_score, calc_sta_drop_score_exp;
