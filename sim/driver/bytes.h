// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace sim::driver {

using bytes = std::vector<uint8_t>;
using mac = std::array<uint8_t, 6>;

// On the wire the lowest byte comes first.
inline void put(uint8_t *at, size_t width, uint64_t value)
{
    for (size_t i = 0; i < width; i++)
        at[i] = uint8_t(value >> 8 * i);
}

inline uint64_t take(const uint8_t *at, size_t width)
{
    uint64_t value = 0;
    for (size_t i = 0; i < width; i++)
        value |= uint64_t{at[i]} << 8 * i;
    return value;
}

// What cannot be read is thrown as sim::error. Between the digits there may be dots and colons.
bytes bytes_of_hex(std::string_view digits);
mac mac_of(std::string_view text);
uint32_t ipv4_of(std::string_view text); // host order

std::string text_of(const mac &);
std::string text_of_ipv4(uint32_t); // host order

} // namespace sim::driver
