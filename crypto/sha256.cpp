// SPDX-License-Identifier: MIT
#include "crypto/bytes.h"
#include "crypto/secret.h"

#include <algorithm>
#include <bit>
#include <cstddef>
#include <iterator>
#include <libvexa.h>

static_assert(sizeof(sha256_ctx) == 168 && offsetof(sha256_ctx, block) == 8 && offsetof(sha256_ctx, h) == 136);

namespace {

constexpr uint32_t block_size = 64;
constexpr uint32_t length_field = 8; // at the end of the last block

constexpr uint32_t initial[8] = {
    0x6a09e667, 0xbb67ae85, 0x3c6ef372, 0xa54ff53a, 0x510e527f, 0x9b05688c, 0x1f83d9ab, 0x5be0cd19,
};

alignas(16) constexpr uint32_t round_constants[64] = {
    0x428a2f98, 0x71374491, 0xb5c0fbcf, 0xe9b5dba5, 0x3956c25b, 0x59f111f1, 0x923f82a4, 0xab1c5ed5,
    0xd807aa98, 0x12835b01, 0x243185be, 0x550c7dc3, 0x72be5d74, 0x80deb1fe, 0x9bdc06a7, 0xc19bf174,
    0xe49b69c1, 0xefbe4786, 0x0fc19dc6, 0x240ca1cc, 0x2de92c6f, 0x4a7484aa, 0x5cb0a9dc, 0x76f988da,
    0x983e5152, 0xa831c66d, 0xb00327c8, 0xbf597fc7, 0xc6e00bf3, 0xd5a79147, 0x06ca6351, 0x14292967,
    0x27b70a85, 0x2e1b2138, 0x4d2c6dfc, 0x53380d13, 0x650a7354, 0x766a0abb, 0x81c2c92e, 0x92722c85,
    0xa2bfe8a1, 0xa81a664b, 0xc24b8b70, 0xc76c51a3, 0xd192e819, 0xd6990624, 0xf40e3585, 0x106aa070,
    0x19a4c116, 0x1e376c08, 0x2748774c, 0x34b0bcb5, 0x391c0cb3, 0x4ed8aa4a, 0x5b9cca4f, 0x682e6ff3,
    0x748f82ee, 0x78a5636f, 0x84c87814, 0x8cc70208, 0x90befffa, 0xa4506ceb, 0xbef9a3f7, 0xc67178f2,
};

constexpr uint32_t big_sigma0(uint32_t x)
{
    return std::rotr(x, 2) ^ std::rotr(x, 13) ^ std::rotr(x, 22);
}
constexpr uint32_t big_sigma1(uint32_t x)
{
    return std::rotr(x, 6) ^ std::rotr(x, 11) ^ std::rotr(x, 25);
}

constexpr uint32_t choose(uint32_t x, uint32_t y, uint32_t z)
{
    return ((y ^ z) & x) ^ z;
}

// The working variables a to h. They change places each round; here the names turn instead of the values.
struct working {
    uint32_t v[8];
    uint32_t b_xor_c; // of the round to come: the round before had it as a ^ b
};

template <int Turn>
[[gnu::always_inline]] inline void one_round(working &now, uint32_t input)
{
    constexpr auto at = [](int name) { return (name - Turn) & 7; };
    constexpr int a = at(0), b = at(1), d = at(3), e = at(4), f = at(5), g = at(6), h = at(7);
    auto &v = now.v;
    v[h] += input;
    const uint32_t t = choose(v[e], v[f], v[g]) + big_sigma1(v[e]);
    const uint32_t a_xor_b = v[a] ^ v[b];
    v[d] += v[h];
    v[d] += t;
    v[h] += ((a_xor_b & now.b_xor_c) ^ v[b]) + big_sigma0(v[a]); // the majority of a, b and c
    v[h] += t;
    now.b_xor_c = a_xor_b;
}

using four = uint32_t __attribute__((vector_size(16))); // plain words where the processor has no such registers

inline four rotated(four x, int n)
{
    return x >> n | x << (32 - n);
}
inline four sigma0(four x)
{
    return rotated(x, 7) ^ rotated(x, 18) ^ x >> 3;
}
inline four sigma1(four x)
{
    return rotated(x, 17) ^ rotated(x, 19) ^ x >> 10;
}

// The message schedule, four words at a time. The next four come in three steps, so that the vector unit makes them
// between the rounds, which keep the integer unit busy.
class schedule {
public:
    explicit schedule(const uint8_t *block)
    {
        for (int i = 0; i < 4; i++, block += 16) {
            last_[i] = four{load_be32(block), load_be32(block + 4), load_be32(block + 8), load_be32(block + 12)};
            put(4 * i, last_[i]);
        }
    }

    uint32_t operator[](int i) const { return input_[i]; }

    void begin_next()
    {
        next_ = last_[0] + sigma0(__builtin_shufflevector(last_[0], last_[1], 1, 2, 3, 4)) +
                __builtin_shufflevector(last_[2], last_[3], 1, 2, 3, 4);
    }
    void add_first_half() { next_ += sigma1(__builtin_shufflevector(last_[3], four{}, 2, 3, 4, 5)); }
    void add_second_half() { next_ += sigma1(__builtin_shufflevector(four{}, next_, 0, 1, 4, 5)); } // from the first
    void put_next(int i)
    {
        put(i, next_);
        for (int n = 0; n < 3; n++)
            last_[n] = last_[n + 1];
        last_[3] = next_;
    }

private:
    void put(int i, four words)
    {
        four constants;
        memcpy(&constants, round_constants + i, sizeof constants);
        words += constants;
        memcpy(input_ + i, &words, sizeof words);
    }

    alignas(16) uint32_t input_[64]; // words with their round constants
    four last_[4], next_;
};

template <int Turn, bool More>
[[gnu::always_inline]] inline void four_rounds(working &now, schedule &words, int i)
{
    if constexpr (More)
        words.begin_next();
    one_round<Turn>(now, words[i]);
    if constexpr (More)
        words.add_first_half();
    one_round<Turn + 1>(now, words[i + 1]);
    one_round<Turn + 2>(now, words[i + 2]);
    if constexpr (More) {
        words.add_second_half();
        words.put_next(i + 16);
    }
    one_round<Turn + 3>(now, words[i + 3]);
}

void compress(uint32_t (&state)[8], const uint8_t *data, size_t blocks)
{
    for (; blocks; blocks--, data += block_size) {
        schedule words{data};
        working now;
        std::copy(std::begin(state), std::end(state), now.v);
        now.b_xor_c = state[1] ^ state[2];
        for (int i = 0; i < 48; i += 8) {
            four_rounds<0, true>(now, words, i);
            four_rounds<4, true>(now, words, i + 4);
        }
        for (int i = 48; i < 64; i += 8) {
            four_rounds<0, false>(now, words, i);
            four_rounds<4, false>(now, words, i + 4);
        }
        for (int i = 0; i < 8; i++)
            state[i] += now.v[i];
    }
}

} // namespace

extern "C" void sha256_init(sha256_ctx *ctx)
{
    ctx->tot_len = ctx->len = 0;
    std::copy(std::begin(initial), std::end(initial), ctx->h);
}

extern "C" void sha256_update(sha256_ctx *ctx, const uint8_t *message, uint32_t len)
{
    if (len == 0)
        return;
    const uint32_t room = block_size - ctx->len;
    const uint32_t taken = std::min(room, len);
    memcpy(ctx->block + ctx->len, message, taken);
    if (len < room) {
        ctx->len += len;
        return;
    }
    const uint32_t blocks = (len - taken) / block_size;
    compress(ctx->h, ctx->block, 1);
    compress(ctx->h, message + taken, blocks);
    ctx->len = (len - taken) % block_size;
    memcpy(ctx->block, message + len - ctx->len, ctx->len);
    ctx->tot_len += (blocks + 1) * block_size;
}

extern "C" void sha256_final(sha256_ctx *ctx, uint8_t digest[32])
{
    const uint32_t blocks = ctx->len < block_size - length_field ? 1 : 2;
    uint8_t *const end = blocks == 1 ? ctx->block + block_size : std::end(ctx->block);
    std::fill(ctx->block + ctx->len, end, uint8_t{0});
    ctx->block[ctx->len] = 0x80;
    // 32 bits of the length: digests of 2^29 bytes and more must stay what they always were
    store_be32(end - 4, (ctx->tot_len + ctx->len) * 8);
    compress(ctx->h, ctx->block, blocks);
    for (const uint32_t word : ctx->h) {
        store_be32(digest, word);
        digest += sizeof word;
    }
}

extern "C" void sha256(const uint8_t *message, uint32_t len, uint8_t digest[32])
{
    secret<sha256_ctx> ctx;
    sha256_init(ctx.get());
    sha256_update(ctx.get(), message, len);
    sha256_final(ctx.get(), digest);
}
