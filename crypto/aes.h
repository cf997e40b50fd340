// SPDX-License-Identifier: MIT
#pragma once

#include "crypto/aes_tables.h"
#include "crypto/bytes.h"

#include <utility>

// The rounds of AES on a block held in four words; inline, so that a mode keeps the block in registers.

[[gnu::visibility("hidden")]] extern const aes_tables aes;

struct aes_block {
    uint32_t a, b, c, d;
};

inline aes_block load_block(const uint8_t *p)
{
    return {load_be32(p), load_be32(p + 4), load_be32(p + 8), load_be32(p + 12)};
}

inline void store_block(uint8_t *p, aes_block s)
{
    store_be32(p, s.a);
    store_be32(p + 4, s.b);
    store_be32(p + 8, s.c);
    store_be32(p + 12, s.d);
}

inline aes_block operator^(aes_block x, aes_block y)
{
    return {x.a ^ y.a, x.b ^ y.b, x.c ^ y.c, x.d ^ y.d};
}

constexpr uint32_t byte_of(uint32_t word, int index)
{
    return word >> (24 - 8 * index) & 0xff;
}

enum class direction { forwards, backwards };

template <direction To>
constexpr const aes_direction &tables()
{
    return To == direction::forwards ? aes.enc : aes.dec;
}

// One column after a round. The arguments are the columns that ShiftRows takes its four bytes from; InvShiftRows goes
// the other way round, where two of them change places.
template <direction To>
inline uint32_t mix(uint32_t row0, uint32_t row1, uint32_t row2, uint32_t row3)
{
    const auto &t = tables<To>().round;
    if constexpr (To == direction::backwards)
        std::swap(row1, row3);
    return t[0][byte_of(row0, 0)] ^ t[1][byte_of(row1, 1)] ^ t[2][byte_of(row2, 2)] ^ t[3][byte_of(row3, 3)];
}

// The same in the last round, which does not mix.
template <direction To>
inline uint32_t substitute(uint32_t row0, uint32_t row1, uint32_t row2, uint32_t row3)
{
    const auto &sbox = tables<To>().sbox;
    if constexpr (To == direction::backwards)
        std::swap(row1, row3);
    return uint32_t{sbox[byte_of(row0, 0)]} << 24 | uint32_t{sbox[byte_of(row1, 1)]} << 16 |
           uint32_t{sbox[byte_of(row2, 2)]} << 8 | sbox[byte_of(row3, 3)];
}

template <direction To>
[[gnu::always_inline]] inline aes_block aes_crypt(const uint32_t *key, int rounds, aes_block s)
{
    const auto round_key = [&key] { return aes_block{key[0], key[1], key[2], key[3]}; };
    s = s ^ round_key();
    for (key += 4; --rounds > 0; key += 4)
        s = aes_block{mix<To>(s.a, s.b, s.c, s.d), mix<To>(s.b, s.c, s.d, s.a), mix<To>(s.c, s.d, s.a, s.b),
                      mix<To>(s.d, s.a, s.b, s.c)} ^
            round_key();
    return aes_block{substitute<To>(s.a, s.b, s.c, s.d), substitute<To>(s.b, s.c, s.d, s.a),
                     substitute<To>(s.c, s.d, s.a, s.b), substitute<To>(s.d, s.a, s.b, s.c)} ^
           round_key();
}
