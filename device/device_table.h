// SPDX-License-Identifier: MIT
#pragma once

#include <libvexa.h>

inline constexpr size_t device_count = 73;

// Every model of the family, also those without a board record, by generation.
extern const struct device device_table[device_count];
