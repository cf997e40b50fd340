// SPDX-License-Identifier: MIT
#include "crypto/aes.h"

#include "crypto/secret.h"

#include <algorithm>
#include <cstddef>
#include <libvexa.h>

static_assert(sizeof(rijndael_ctx) == 488 && offsetof(rijndael_ctx, ek) == 8 && offsetof(rijndael_ctx, dk) == 248);

alignas(64) constexpr aes_tables aes = make_aes_tables();

namespace {

struct schedule {
    uint32_t word[60];
};

uint32_t substitute_word(uint32_t w)
{
    return substitute<direction::forwards>(w, w, w, w);
}

template <int KeyWords>
int expand(uint32_t *rk, const uint8_t *key)
{
    constexpr int rounds = KeyWords + 6, words = 4 * (rounds + 1);
    secret<uint32_t[KeyWords]> last; // words made
    auto &w = *last.get();
#pragma GCC unroll 8
    for (int i = 0; i < KeyWords; i++, key += sizeof w[0])
        rk[i] = w[i] = load_be32(key);
    uint8_t round_constant = 1;
    for (int i = KeyWords; i < words; i += KeyWords, round_constant = gf_double(round_constant)) {
        uint32_t changed = substitute_word(std::rotl(w[KeyWords - 1], 8)) ^ uint32_t(round_constant) << 24;
        uint32_t sum = 0; // kept apart from `changed`, whose lookups take their time
#pragma GCC unroll 8
        for (int j = 0; j < KeyWords; j++) {
            if (j >= 4 && i + j >= words)
                break;
            if (KeyWords == 8 && j == 4) {
                changed = substitute_word(w[3]);
                sum = 0;
            }
            sum ^= w[j];
            rk[i + j] = w[j] = sum ^ changed;
        }
    }
    return rounds;
}

// InvMixColumns alone: the decryption tables begin with the inverse substitution, which the S-box takes back.
uint32_t unmix(uint32_t w)
{
    const uint32_t s = substitute_word(w);
    return mix<direction::backwards>(s, s, s, s);
}

// An encryption schedule in the inverse cipher's order: rounds back to front, the inner ones unmixed.
void reverse_schedule(uint32_t *out, const uint32_t *in, int rounds)
{
    const int last = 4 * rounds;
    std::copy(in + last, in + last + 4, out);
    for (int i = 4; i < last; i += 4)
        for (int j = 0; j < 4; j++)
            out[i + j] = unmix(in[last - i + j]);
    std::copy(in, in + 4, out + last);
}

} // namespace

extern "C" int rijndaelKeySetupEnc(uint32_t rk[60], const uint8_t *key, int bits)
{
    switch (bits) {
    case 128:
        return expand<4>(rk, key);
    case 192:
        return expand<6>(rk, key);
    case 256:
        return expand<8>(rk, key);
    default:
        return 0;
    }
}

extern "C" int rijndaelKeySetupDec(uint32_t rk[60], const uint8_t *key, int bits)
{
    secret<schedule> enc;
    const int rounds = rijndaelKeySetupEnc(enc->word, key, bits);
    if (rounds)
        reverse_schedule(rk, enc->word, rounds);
    return rounds;
}

extern "C" void rijndaelEncrypt(const uint32_t rk[60], int rounds, const uint8_t in[16], uint8_t out[16])
{
    store_block(out, aes_crypt<direction::forwards>(rk, rounds, load_block(in)));
}

extern "C" int rijndael_set_key_enc_only(rijndael_ctx *ctx, const uint8_t *key, int bits)
{
    const int rounds = rijndaelKeySetupEnc(ctx->ek, key, bits);
    if (rounds == 0)
        return -1;
    ctx->Nr = rounds;
    ctx->enc_only = 1;
    return 0;
}

extern "C" int rijndael_set_key(rijndael_ctx *ctx, const uint8_t *key, int bits)
{
    if (rijndael_set_key_enc_only(ctx, key, bits) != 0)
        return -1;
    reverse_schedule(ctx->dk, ctx->ek, ctx->Nr);
    ctx->enc_only = 0;
    return 0;
}

extern "C" void rijndael_encrypt(const rijndael_ctx *ctx, const uint8_t src[16], uint8_t dst[16])
{
    rijndaelEncrypt(ctx->ek, ctx->Nr, src, dst);
}

extern "C" void rijndael_decrypt(const rijndael_ctx *ctx, const uint8_t src[16], uint8_t dst[16])
{
    store_block(dst, aes_crypt<direction::backwards>(ctx->dk, ctx->Nr, load_block(src)));
}
