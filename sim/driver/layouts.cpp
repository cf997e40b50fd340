// SPDX-License-Identifier: MIT
#include "sim/driver/layouts.h"

namespace sim::driver {

namespace {

constexpr auto counter = form::counter;

constexpr field station_info_fields[] = {
    {"state", 2, 2}, // the frequency of the station's channel, in MHz
    {"mode_flags", 4, 4},
    {"capabilities", 8, 4},
    {"rssi", 13, 1, form::signal},
    {"mac", 32, 6, form::hardware},
    {"serial", 38, 6, form::hardware},
    {"tx_rate", 1784, 4},
    {"ccq", 1788, 2},
    {"noise", 1790, 2},
    {"associd", 1794, 2},
    {"tx_power", 1796, 2},
    {"vlan", 1798, 2},
    {"auth_time", 1876, 4},
    {"dhcp_start", 1880, 4},
    {"dhcp_end", 1884, 4},
    {"ip", 1892, 4, form::address},
    {"host", 1896, 32, form::text},
    {"reserved", 1928, 4},
    {"uptime", 1952, 4},
    {"idle", 1956, 4},
    {"rx_rate", 1984, 4},
    {"tx_mcs", 1988, 1},
    {"identity", 1992, 64, form::measured},
    {"identity_length", 2056, 1},
    {"extra", 2058, 2},
    {"tcp_tx_bytes", 2064, 8, counter},
    {"tcp_tx_stalls", 2072, 2},
    {"tcp_tx_retries", 2074, 2},
    {"tcp_tx_lat_max", 2076, 4},
    {"tcp_tx_lat_min", 2080, 4},
    {"tcp_tx_lat_sum", 2084, 4},
    {"tcp_tx_lat_samples", 2088, 4},
    {"tcp_rx_bytes", 2096, 8, counter},
    {"tcp_rx_stalls", 2104, 2},
    {"tcp_rx_retries", 2106, 2},
    {"tcp_rx_lat_max", 2108, 4},
    {"tcp_rx_lat_min", 2112, 4},
    {"tcp_rx_lat_sum", 2116, 4},
    {"tcp_rx_lat_samples", 2120, 4},
    {"width", 2128, 4},
};

constexpr field node_statistics_fields[] = {
    {"mac", 0, 6, form::hardware},
    {"rx_packets", 8, 8, counter},
    {"rx_mcast", 24, 4, counter},
    {"rx_bytes", 32, 8, counter},
    {"rx_retries", 52, 4, counter},
    {"tx_packets", 116, 4, counter},
    {"tx_retry_bursts", 120, 4, counter},
    {"tx_bytes", 144, 8, counter},
    {"rx_counter", 260, 4, counter},
    {"tx_counter", 264, 4, counter},
    {"tx_lat_total", 276, 4},
    {"tx_lat_samples", 280, 4},
    {"tx_lat_min", 284, 4},
    {"tx_lat_max", 288, 4},
    {"tx_rts_retries", 292, 4, counter},
    {"tx_retries", 296, 8, counter},
    {"tx_mpdu_bytes", 312, 8, counter},
    {"tx_total", 320, 8, counter},
    {"tx_success", 328, 8, counter},
    {"tx_dropped", 336, 8, counter},
    {"tx_retries_mov", 376, 8, counter},
    {"tx_attempts_mov", 384, 8, counter},
    {"tx_total_mov", 392, 8, counter},
    {"tx_dropped_mov", 400, 8, counter},
    {"rx_bytes_mov", 424, 8, counter},
    {"tx_bytes_mov", 432, 8, counter},
    {"tx_rate_mov", 440, 4},
    {"rx_rate_mov", 444, 4},
};

constexpr field tracking_fields[] = {
    {"radio_mode", 0, 4},    {"ip_obtained", 4, 4},  {"arp_answered", 8, 4},   {"dns_timeouts", 12, 4},
    {"dns_latency", 16, 4},  {"icmp_rtt", 20, 4},    {"dhcp_requests", 24, 4}, {"dhcp_difference", 28, 4},
    {"dhcp_retries", 32, 4}, {"dhcp_offers", 36, 4}, {"dhcp_acks", 40, 4},     {"disconnects", 44, 4},
};

constexpr field radio_fields[] = {
    {"channel", 0, 2},     {"width", 2, 1},     // MHz
    {"frequency", 4, 4},                        // MHz
    {"chains", 8, 1},      {"max_rate", 12, 4}, // kbit/s
    {"busy", 16, 4},                            // of the air time, in percent: all, received, sent, foreign
    {"busy_rx", 20, 4},    {"busy_tx", 24, 4},  {"interference", 28, 4}, {"rx_packets", 32, 4}, {"tx_packets", 36, 4},
    {"rx_bytes", 40, 4},   {"tx_bytes", 44, 4}, {"rx_errors", 48, 4},    {"tx_errors", 52, 4},  {"tx_retries", 56, 4},
    {"tx_dropped", 60, 4}, {"beacons", 64, 4},  {"noise", 68, 4}, // dBm
};

constexpr field scan_fields[] = {
    {"entry_length", 0, 2},
    {"frequency", 2, 2}, // MHz
    {"flags", 4, 2},
    {"beacon_interval", 6, 2}, // 1.024 ms
    {"age", 16, 4},            // ms
    {"noise", 20, 1},          // dBm
    {"rssi", 21, 1, form::signal},
    {"capability", 24, 2},
    {"width", 28, 4},    // MHz
    {"max_rate", 36, 4}, // kbit/s
    {"channel", 40, 1},
    {"bssid", 42, 6, form::hardware},
    {"ssid_length", 85, 1},
    {"ies_length", 86, 2},
};

} // namespace

const layout station_info{2132, station_info_fields};
const layout node_statistics{448, node_statistics_fields};
const layout tracking_statistics{48, tracking_fields};
const layout radio_statistics{72, radio_fields};
const layout scan_entry{88, scan_fields};

} // namespace sim::driver
