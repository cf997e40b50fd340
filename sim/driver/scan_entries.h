// SPDX-License-Identifier: MIT
#pragma once

#include "sim/driver/bytes.h"
#include "sim/driver/lines.h"

namespace sim::driver {

// Words that describe the elements of a neighbour, beside those of its record.
bool is_element_key(std::string_view key);

// The information elements that a network with these values sends.
bytes elements_of(const keys &values);

bytes probe_frame_of(const mac &station, const keys &values);

} // namespace sim::driver
