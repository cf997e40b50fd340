// SPDX-License-Identifier: MIT
#include "factor.h"

#include "rate_curve.h"

#include <algorithm>

namespace {

int phy_rate_score(const stainfo &sta)
{
    if (sta.tx_rate_mov == 0 || sta.state < 4800)
        return 100;
    const uint32_t rate = sta.tx_rate_mov * sta.tx_eff_pct / 100; // wraps like the driver's own counters
    return score_on(sta.state <= 5000 ? narrow_rate_curve : wide_rate_curve, rate);
}

// From 1615 ms on there is no score at all: such a station's connections stand still, which other factors tell.
int tcp_latency_score(const stainfo &sta)
{
    const vexa_avg &rx = sta.rx_tcp_stats.lat, &tx = sta.tx_tcp_stats.lat;
    const uint32_t latency = uint32_t(rx.average) + uint32_t(tx.average); // a direction without samples takes 1 away
    if (uint64_t(rx.count) + uint64_t(tx.count) == 0 || latency < 100)
        return 100;
    return 100 - int((latency - 100) / 15);
}

int ip_timeout_score(const stainfo &sta)
{
    return sta.tracking.ip_obtained ? 100 : 0;
}

int dhcp_score(const stainfo &sta)
{
    const vexa_sta_tracking &t = sta.tracking;
    const bool asked = t.dhcp_requests != 0 || int64_t{t.dhcp_difference} - t.dhcp_retries >= 1;
    return t.ip_obtained || !asked || t.dhcp_offers || t.dhcp_acks ? 100 : 0;
}

int arp_timeout_score(const stainfo &sta)
{
    return sta.tracking.arp_answered ? 100 : 0;
}

int dns_timeout_score(const stainfo &sta)
{
    return 100 - 10 * int(std::min(sta.tracking.dns_timeouts, 10u));
}

int dns_latency_score(const stainfo &sta)
{
    constexpr uint32_t none = UINT32_MAX;
    const uint32_t latency = sta.tracking.dns_latency;
    return latency == none ? 100 : int(100.0 - 40.0 * std::min(latency, 1500u) / 1500.0);
}

int icmp_rtt_score(const stainfo &sta)
{
    const uint32_t rtt = sta.tracking.icmp_rtt;
    return rtt < 100 ? 100 : 100 - int(std::min((rtt - 100) / 15, 100u));
}

int disconnect_score(const stainfo &sta)
{
    const uint32_t disconnects = std::clamp(sta.tracking.disconnects, 1u, 11u); // one is nothing to speak of
    return 100 - 10 * int(disconnects - 1);
}

constexpr scored_factor factors[] = {
    {factor_phy_rate, phy_rate_score, nullptr},
    {factor_tcp_latency, tcp_latency_score, nullptr},
    {factor_wifi_retries, calc_sta_retry_score, calc_sta_retry_score},
    {factor_ip_timeout, ip_timeout_score, ip_timeout_score},
    {factor_dhcp, dhcp_score, dhcp_score},
    {factor_arp_timeout, arp_timeout_score, arp_timeout_score},
    {factor_dns_timeout, dns_timeout_score, dns_timeout_score},
    {factor_dns_latency, dns_latency_score, dns_latency_score},
    {factor_icmp_rtt, icmp_rtt_score, icmp_rtt_score},
    {factor_disconnects, disconnect_score, disconnect_score},
    {factor_wifi_drops, calc_sta_drop_score, calc_sta_drop_score_exp},
};

} // namespace

std::span<const scored_factor> scored_factors()
{
    return factors;
}
