// SPDX-License-Identifier: MIT
#include "crypto/aes.h"
#include "crypto/secret.h"

#include <libvexa.h>

namespace {

constexpr size_t block_size = 16;
constexpr int key_bits = 128;

} // namespace

extern "C" int aes_cbc_generate_iv(uint8_t *iv, size_t len)
{
    return gen_rand_bytes(iv, len);
}

extern "C" int aes_cbc_encrypt_128(const uint8_t key[16], const uint8_t iv[16], uint8_t *data, size_t len)
{
    if (len % block_size)
        return -1;
    secret<rijndael_ctx> ctx;
    if (const int failure = rijndael_set_key_enc_only(ctx.get(), key, key_bits))
        return failure;
    aes_block chain = load_block(iv);
    for (const uint8_t *end = data + len; data != end; data += block_size) {
        chain = aes_crypt<direction::forwards>(ctx->ek, ctx->Nr, chain ^ load_block(data));
        store_block(data, chain);
    }
    return 0;
}

extern "C" int aes_cbc_decrypt_128(const uint8_t key[16], const uint8_t iv[16], uint8_t *data, size_t len)
{
    if (len == 0 || len % block_size) // encryption takes nothing, decryption refuses it
        return -1;
    secret<rijndael_ctx> ctx;
    if (const int failure = rijndael_set_key(ctx.get(), key, key_bits))
        return failure;
    aes_block previous = load_block(iv);
    for (const uint8_t *end = data + len; data != end; data += block_size) {
        const aes_block cipher = load_block(data);
        store_block(data, aes_crypt<direction::backwards>(ctx->dk, ctx->Nr, cipher) ^ previous);
        previous = cipher;
    }
    return 0;
}
