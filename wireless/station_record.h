// SPDX-License-Identifier: MIT
#pragma once

#include <libvexa.h>

// What the driver says about a station, and what becomes of it.

inline constexpr size_t station_answer_size = 2132; // at least; the library has room for more
inline constexpr size_t station_mac_at = 32;        // also of the question
inline constexpr size_t station_associd_at = 1794;
inline constexpr size_t node_answer_size = 448;

// Both expect the whole record; what the driver left out of it is zero.
void fill_station(stainfo &station, const uint8_t *answer);
void fill_node_counters(stainfo &station, const uint8_t *answer);
