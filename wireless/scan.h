// SPDX-License-Identifier: MIT
#pragma once

#include <libvexa.h>

inline constexpr size_t scan_entry_header = 88;

// Calls for each whole entry of an answer.
void walk_scan_entries(const uint8_t *answer, size_t length, vexa_scan_callback callback, void *context);

// A callback that appends a scan record to the list that is its context.
int add_scan_record(const uint8_t *entry, size_t length, void *list);

// A callback that takes what an element of the maker's says into the scan record that is its context.
int take_vendor_element(const uint8_t *element, size_t length, void *record);
