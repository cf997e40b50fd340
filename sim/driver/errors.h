// SPDX-License-Identifier: MIT
#pragma once

#include <string>

namespace sim::driver {

// The number of an error, by its name or as a number; 0 for "none". Throws sim::error.
int error_number(const std::string &name);

} // namespace sim::driver
