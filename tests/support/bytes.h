// SPDX-License-Identifier: MIT
#pragma once

#include <libvexa.h>
#include <random>
#include <string_view>
#include <vector>

using bytes = std::vector<uint8_t>;

inline bytes from_hex(std::string_view digits)
{
    bytes out(digits.size() / 2);
    hex2uchar(std::string{digits}.c_str(), out.data(), out.size());
    return out;
}

// The same bytes in each run, so that a failure comes back.
inline bytes random_bytes(size_t count)
{
    static std::mt19937 engine{48000};
    bytes out(count);
    for (uint8_t &byte : out)
        byte = uint8_t(engine());
    return out;
}
