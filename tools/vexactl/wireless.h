// SPDX-License-Identifier: MIT
#pragma once

#include "output.h"

#include <libvexa.h>
#include <vector>

// The interfaces of the radios that are up.
std::vector<vap_entry> find_vaps();
const vap_entry *find_vap(const std::vector<vap_entry> &, const char *name);

json_ref vap_documents();
inline constexpr column vap_columns[] = {
    {"name", "VAP"},
    {"radio", "Radio"},
    {"ssid", "Network", kind::text, true},
    {"bssid", "BSSID"},
    {"mode", "Mode"},
    {"channel", "Ch", kind::number},
    {"usage", "Usage"},
    {"stations", "Stations", kind::number},
};

json_ref radio_document(const char *ifname); // null when no driver answers

// of one VAP, or of all for nullptr
json_ref station_documents(const char *vap);
inline constexpr column station_columns[] = {
    {"mac", "Station"},
    {"vap", "VAP"},
    {"name", "Name", kind::text, true},
    {"address", "Address"},
    {"standard", "Wi-Fi"},
    {"signal_dbm", "dBm", kind::number},
    {"tx_mbit", "Mbit/s", kind::number},
};

// With its counters; null when no VAP knows it.
json_ref station_document(const uint8_t mac[6]);

json_ref network_documents(const char *ifname);
