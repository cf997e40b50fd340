// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <libvexa.h>

// What the configuration store is measured against.

// A getline() loop that makes the same three blocks of each line.
cfg_entry *parse_with_getline(const char *path);

// The first entry with this key, each pair of keys compared one character at a time: the weight of a digit is that
// of the whole number that starts there.
const cfg_entry *find_by_character(const cfg_entry *cfg, const char *key);

// One scan that looks for the members of a section and does nothing with them.
size_t count_section(const cfg_entry *cfg, const char *prefix, const char *postfix);

// Sorts pointers to the entries of both sides by key and joins them; the number of changes.
size_t diff_by_sorting(const cfg_entry *old_cfg, const cfg_entry *new_cfg);
