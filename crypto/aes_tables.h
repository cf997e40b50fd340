// SPDX-License-Identifier: MIT
#pragma once

#include <bit>
#include <cstdint>

// The tables of FIPS-197, computed from their definitions when the library is compiled.
//
// A round table holds, for each byte, its S-box value multiplied by one column of the MixColumns matrix; the other
// three tables of a direction are the same words rotated, so that a round is sixteen lookups without a shift.

struct aes_direction {
    uint32_t round[4][256];
    uint8_t sbox[256];
};

constexpr uint8_t gf_double(uint8_t x)
{
    return uint8_t(x << 1 ^ (x & 0x80 ? 0x1b : 0));
}

constexpr uint8_t gf_multiply(uint8_t x, unsigned factor)
{
    uint8_t product = 0;
    for (; factor; factor >>= 1, x = gf_double(x))
        if (factor & 1)
            product ^= x;
    return product;
}

constexpr uint8_t affine(uint8_t x)
{
    return uint8_t(x ^ std::rotl(x, 1) ^ std::rotl(x, 2) ^ std::rotl(x, 3) ^ std::rotl(x, 4) ^ 0x63);
}

constexpr void fill_rounds(aes_direction &d, uint8_t m0, uint8_t m1, uint8_t m2, uint8_t m3)
{
    for (unsigned x = 0; x < 256; x++) {
        const uint8_t s = d.sbox[x];
        const uint32_t column = uint32_t{gf_multiply(s, m0)} << 24 | uint32_t{gf_multiply(s, m1)} << 16 |
                                uint32_t{gf_multiply(s, m2)} << 8 | gf_multiply(s, m3);
        for (int i = 0; i < 4; i++)
            d.round[i][x] = std::rotr(column, 8 * i);
    }
}

struct aes_tables {
    aes_direction enc, dec;
};

constexpr aes_tables make_aes_tables()
{
    aes_tables t{};
    // 3 generates the field, 0xf6 is its inverse: the two walks meet each element with its reciprocal
    uint8_t power = 1, reciprocal = 1;
    do {
        t.enc.sbox[power] = affine(reciprocal);
        power = gf_multiply(power, 3);
        reciprocal = gf_multiply(reciprocal, 0xf6);
    } while (power != 1);
    t.enc.sbox[0] = affine(0);
    for (unsigned x = 0; x < 256; x++)
        t.dec.sbox[t.enc.sbox[x]] = uint8_t(x);
    fill_rounds(t.enc, 2, 1, 1, 3);
    fill_rounds(t.dec, 14, 9, 13, 11);
    return t;
}
