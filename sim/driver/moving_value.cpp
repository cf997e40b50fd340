// SPDX-License-Identifier: MIT
#include "sim/driver/moving_value.h"

#include "sim/error.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>

namespace sim::driver {

namespace {

constexpr double swing_seconds = 47;

bool is_sign(char c)
{
    return c == '+' || c == '-';
}

} // namespace

moving_value moving_value::of(std::string_view text)
{
    const std::string copy{text};
    const char *at = copy.c_str();
    char *end = nullptr;
    moving_value v;
    v.base = *at == '-' ? uint64_t(strtoll(at, &end, 0)) : strtoull(at, &end, 0);
    bool right = end != at;
    if (is_sign(*end)) {
        v.rate = strtod(at = end, &end);
        right = right && end != at && end[0] == '/' && end[1] == 's';
        end += right ? 2 : 0;
    }
    if (*end == '~') {
        v.swing = strtod(at = end + 1, &end);
        right = right && end != at;
    }
    if (!right || *end != '\0')
        throw error("no number: " + copy);
    return v;
}

moving_value moving_value::times(double factor) const
{
    constexpr double largest = 9e18;
    return {factor == 1 ? base : uint64_t(std::min(double(base) * factor, largest)), rate * factor, swing * factor};
}

uint64_t moving_value::at(double seconds, double phase) const
{
    const double turn = 2 * M_PI * (seconds / swing_seconds + phase);
    const int64_t change = int64_t(std::floor(rate * seconds)) + int64_t(std::lround(swing * std::sin(turn)));
    const bool below_zero = int64_t(base) >= 0 && change < 0 && uint64_t(-change) > base;
    return below_zero ? 0 : base + uint64_t(change);
}

} // namespace sim::driver
