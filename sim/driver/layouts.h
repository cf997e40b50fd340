// SPDX-License-Identifier: MIT
#pragma once

#include "sim/driver/record.h"

// The driver's records. Each key is a word of a description; what has no key stays 0.
namespace sim::driver {

extern const layout station_info;
extern const layout node_statistics;
extern const layout tracking_statistics;
extern const layout radio_statistics;
extern const layout scan_entry; // the part before the SSID

inline constexpr size_t mac_in_station_info = 32;
inline constexpr size_t mac_in_node_statistics = 0;

} // namespace sim::driver
