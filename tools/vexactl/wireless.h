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
    {"channel", "Ch", kind::number},
    {"usage", "Usage"},
    {"stations", "Stations", kind::number},
};

json_ref radio_document(const char *ifname); // null when no driver answers

// Of one VAP, or of all for nullptr; `silent` gets the names of those that give no answer.
json_ref station_documents(const char *vap, std::string &silent);
int no_stations(output &, const std::string &silent); // says so and returns the status
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

// What the radio of an interface heard, or all radios for nullptr; strongest first.
json_ref network_documents(const char *ifname);
inline constexpr column network_columns[] = {
    {"bssid", "BSSID"},
    {"ssid", "Network", kind::text, true},
    {"channel", "Channel", kind::number},
    {"width_mhz", "MHz", kind::number},
    {"signal_dbm", "dBm", kind::number},
    {"secured", "Key", kind::on_off},
    {"family_name", "Device", kind::text, true},
};
