// SPDX-License-Identifier: MIT
#include <libvexa.h>

extern "C" {

const char *const anomalies_bar_chart_keys[VEXA_FACTORS] = {
    "weak_signal",       "low_phy_rate",          "high_tcp_packet_loss", "high_tcp_latency",
    "high_wifi_retries", "poor_stream_eff",       "sleepy_client",        "high_wifi_latency",
    "sta_ip_timeout",    "sta_arp_timeout",       "sta_dns_timeout",      "high_dns_latency",
    "high_icmp_rtt",     "high_disconnect_count", "no_dhcp_response",     "high_wifi_drops",
};

const char *const reasons_bar_chart_keys[VEXA_FACTORS] = {
    "signal",        "phy_rate",        "tcp_packet_loss",  "tcp_latency",     "wifi_retries",    "stream_eff",
    "sleepy_client", "wifi_latency",    "sta_ip_timeout",   "sta_arp_timeout", "sta_dns_timeout", "sta_dns_latency",
    "sta_icmp_rtt",  "sta_disconnects", "no_dhcp_response", "wifi_drops",
};
}
