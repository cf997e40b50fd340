// SPDX-License-Identifier: MIT
#include "wireless/station_record.h"

#include "wireless/wire.h"

#include <algorithm>
#include <arpa/inet.h>

namespace {

constexpr size_t mode_flags_at = 4;
constexpr size_t capabilities_at = 8;
constexpr size_t address_at = 1892;
constexpr size_t identity_at = 1992;
constexpr size_t identity_length_at = 2056;
constexpr size_t tx_tcp_at = 2064;
constexpr size_t rx_tcp_at = 2096;
constexpr size_t tcp_block_size = 28;
constexpr uint32_t all_succeed = 100;

#define FIELD(name, offset, width) WIRE_FIELD(stainfo, name, offset, width)

constexpr wire_field station_fields[] = {
    FIELD(state, 2, 2),
    FIELD(flags, 8, 2), // the capability word's low half
    FIELD(rssi, 13, 1),
    FIELD(mac, station_mac_at, 6),
    FIELD(serialno, 38, 6),
    FIELD(tx_rate, 1784, 4),
    FIELD(ccq, 1788, 2),
    FIELD(noise, 1790, 2),
    FIELD(associd, station_associd_at, 2),
    FIELD(tx_power, 1796, 2),
    FIELD(vlan_id, 1798, 2),
    FIELD(auth_time, 1876, 4),
    FIELD(dhcpstart_time, 1880, 4),
    FIELD(dhcpend_time, 1884, 4),
    FIELD(hostname, 1896, 32),
    FIELD(driver_word, 1928, 4),
    FIELD(uptime, 1952, 4),
    FIELD(idletime, 1956, 4),
    FIELD(rx_rate, 1984, 4),
    FIELD(tx_mcs, 1988, 1),
    FIELD(driver_word2, 2058, 2),
    FIELD(bw_max_supp, 2128, 4),
};
static_assert(fits(station_fields, station_answer_size));

constexpr wire_field node_fields[] = {
    FIELD(rx_packets, 8, 8),
    FIELD(rx_mcast, 24, 4),
    FIELD(rx_bytes, 32, 8),
    FIELD(rx_retries, 52, 4),
    FIELD(tx_packets, 116, 4),
    FIELD(tx_retry_burst_count, 120, 4),
    FIELD(tx_bytes, 144, 8),
    FIELD(rx_counter, 260, 4),
    FIELD(tx_counter, 264, 4),
    FIELD(tx_latency.total, 276, 4),
    FIELD(tx_latency.total_count, 280, 4),
    FIELD(tx_latency.min, 284, 4),
    FIELD(tx_latency.max, 288, 4),
    FIELD(tx_rts_retries, 292, 4),
    FIELD(tx_retries, 296, 8),
    FIELD(tx_data_mpdu_bytes, 312, 8),
    FIELD(tx_total, 320, 8),
    FIELD(wifi_tx_success, 328, 8),
    FIELD(wifi_tx_dropped, 336, 8),
    FIELD(tx_retries_mov, 376, 8),
    FIELD(wifi_tx_attempts_mov, 384, 8),
    FIELD(tx_total_mov, 392, 8),
    FIELD(wifi_tx_dropped_mov, 400, 8),
    FIELD(rx_bytes_mov, 424, 8),
    FIELD(tx_bytes_mov, 432, 8),
    FIELD(tx_rate_mov, 440, 4),
    FIELD(rx_rate_mov, 444, 4),
};
static_assert(fits(node_fields, node_answer_size));

constexpr wire_field tcp_fields[] = {
    WIRE_FIELD(vexa_tcp_stats, goodbytes, 0, 8),  WIRE_FIELD(vexa_tcp_stats, stalls, 8, 2),
    WIRE_FIELD(vexa_tcp_stats, retries, 10, 2),   WIRE_FIELD(vexa_tcp_stats, lat_max, 12, 4),
    WIRE_FIELD(vexa_tcp_stats, lat_min, 16, 4),   WIRE_FIELD(vexa_tcp_stats, lat.sum, 20, 4),
    WIRE_FIELD(vexa_tcp_stats, lat.count, 24, 4),
};
static_assert(fits(tcp_fields, tcp_block_size));

constexpr struct {
    uint32_t stainfo::*member;
    uint8_t bit; // of the capability word
} capabilities[] = {{&stainfo::is_11n, 3}, {&stainfo::is_11ac, 28}, {&stainfo::is_11ax, 29}, {&stainfo::is_11r, 31}};

void fill_capabilities(stainfo &station, const uint8_t *answer)
{
    const uint32_t word = load_le32(answer + capabilities_at);
    for (const auto &c : capabilities)
        station.*c.member = word >> c.bit & 1;
    if (load_le32(answer + mode_flags_at) & 0x80)
        station.is_11b = (word & 0x4) == 0;
    else
        station.is_11a = 1;
}

uint32_t transmit_efficiency(uint64_t attempts, uint64_t retries)
{
    if (attempts == 0)
        return all_succeed;
    return retries > attempts ? 0 : uint32_t(double(attempts - retries) / double(attempts) * 100);
}

} // namespace

extern "C" int32_t vexa_sta_info_fill_tcp_stats(vexa_tcp_stats *stats, const void *driver28)
{
    copy_fields<tcp_fields>(*stats, static_cast<const uint8_t *>(driver28));
    return vexa_avg_compute(&stats->lat, -1);
}

void fill_station(stainfo &station, const uint8_t *answer)
{
    copy_fields<station_fields>(station, answer);
    station.ip = htonl(load_le32(answer + address_at));
    station.identity_len = std::min<uint32_t>(answer[identity_length_at], sizeof station.identity);
    memcpy(station.identity, answer + identity_at, station.identity_len);
    fill_capabilities(station, answer);
    vexa_sta_info_fill_tcp_stats(&station.tx_tcp_stats, answer + tx_tcp_at);
    vexa_sta_info_fill_tcp_stats(&station.rx_tcp_stats, answer + rx_tcp_at);
    station.tx_latency.avg = -1; // until there are counters
    station.tx_eff_pct = all_succeed;
}

void fill_node_counters(stainfo &station, const uint8_t *answer)
{
    copy_fields<node_fields>(station, answer);
    station.wifi_tx_attempts = station.tx_retries + station.tx_packets;
    vexa_tx_latency &latency = station.tx_latency;
    if (latency.total_count > 0)
        latency.avg =
            int32_t(std::min<uint64_t>((latency.total + latency.total_count / 2) / latency.total_count, INT32_MAX));
    station.tx_eff_pct = transmit_efficiency(station.wifi_tx_attempts_mov, station.tx_retries_mov);
}
