// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdint>

// The wire form of an envelope, where a record in memory may stand at any address.

namespace wire {

enum offset : size_t {
    magic = 0,
    version = 4,
    flags = 5,
    length = 6,
    method = 8,
    type = 10,
    iv = 12,
    device_id = 28,
    sequence = 34,
    crc = 36,
    payload = 40, // and the size of the header
};

constexpr uint16_t load16(const uint8_t *p)
{
    return uint16_t(p[0] << 8 | p[1]);
}

constexpr void store16(uint8_t *p, uint16_t value)
{
    p[0] = uint8_t(value >> 8);
    p[1] = uint8_t(value);
}

} // namespace wire
