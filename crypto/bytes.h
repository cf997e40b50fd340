// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>

constexpr uint32_t load_be32(const uint8_t *p)
{
    return uint32_t{p[0]} << 24 | uint32_t{p[1]} << 16 | uint32_t{p[2]} << 8 | p[3];
}

constexpr void store_be32(uint8_t *p, uint32_t value)
{
    p[0] = uint8_t(value >> 24);
    p[1] = uint8_t(value >> 16);
    p[2] = uint8_t(value >> 8);
    p[3] = uint8_t(value);
}
