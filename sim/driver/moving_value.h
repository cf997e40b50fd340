// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <string_view>

namespace sim::driver {

// A number that depends on nothing but the time: "BASE", then "+RATE/s" for what grows, "~SWING" for what goes up and
// down around it. Each part may be left out but the first.
struct moving_value {
    uint64_t base = 0; // negative ones as the kernel stores them
    double rate = 0, swing = 0;

    static moving_value of(std::string_view text); // throws sim::error

    bool moves() const { return rate != 0 || swing != 0; }
    moving_value times(double factor) const;
    // `phase`, from 0 to 1, is where in its swing the value starts.
    uint64_t at(double seconds, double phase) const;
};

} // namespace sim::driver
