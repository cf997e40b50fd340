// SPDX-License-Identifier: MIT
// The records that hosts and the library share stay as they were when the hosts were built; a new field goes to the
// end.
#include <libvexa.h>

#define PIN(record, field, offset) static_assert(offsetof(record, field) == (offset))

static_assert(sizeof(vexa_avg) == 24);
static_assert(sizeof(vexa_tcp_stats) == 48);
PIN(vexa_tcp_stats, lat_min, 16);
PIN(vexa_tcp_stats, lat, 24);
static_assert(sizeof(vexa_tx_latency) == 32);
static_assert(sizeof(vexa_score) == 344);
PIN(vexa_score, subscores_now, 24);
PIN(vexa_score, history, 88);

static_assert(sizeof(vexa_sta_tracking) == 48); // the tracking device writes it
PIN(vexa_sta_tracking, dns_timeouts, 12);
PIN(vexa_sta_tracking, dhcp_requests, 24);
PIN(vexa_sta_tracking, dhcp_offers, 36);
PIN(vexa_sta_tracking, disconnects, 44);

static_assert(sizeof(stainfo) == 1288);
PIN(stainfo, valid, 16);
PIN(stainfo, mac, 20);
PIN(stainfo, tx_rate, 32);
PIN(stainfo, uptime, 48);
PIN(stainfo, state, 56);
PIN(stainfo, ip, 76);
PIN(stainfo, flags, 112);
PIN(stainfo, rx_tcp_stats, 120);
PIN(stainfo, rx_packets, 216);
PIN(stainfo, tx_bytes, 248);
PIN(stainfo, tx_retries, 272);
PIN(stainfo, wifi_tx_attempts_mov, 320);
PIN(stainfo, tx_latency, 376);
PIN(stainfo, tx_eff_pct, 408);
PIN(stainfo, identity, 436);
PIN(stainfo, skip_satisfaction, 508);
PIN(stainfo, satisfaction_exp, 856);
PIN(stainfo, bw_max_supp, 1200);
PIN(stainfo, tracking, 1240);

static_assert(sizeof(scanlist) == 544);
PIN(scanlist, ssid, 22);
PIN(scanlist, privacy, 80);
PIN(scanlist, vexa_ie_value, 104);
PIN(scanlist, vexa_ie_flags, 112);
PIN(scanlist, vexa_ie_data, 212);
PIN(scanlist, vexa_ie_blob2, 502);

static_assert(sizeof(vap_entry) == 44);
static_assert(sizeof(wireless_info) == 68);
PIN(wireless_info, frequency, 48);
PIN(wireless_info, dfswait, 66);
static_assert(sizeof(athstat) == 56);

static_assert(sizeof(vexa_vap) == 224);
PIN(vexa_vap, stations, 48);
PIN(vexa_vap, anomalies, 68);
PIN(vexa_vap, metrics, 196);
static_assert(sizeof(vexa_radio) == 40);
static_assert(sizeof(vexa_ap) == 192);
PIN(vexa_ap, station_count, 32);
PIN(vexa_ap, metrics, 48);
