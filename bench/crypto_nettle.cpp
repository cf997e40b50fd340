// SPDX-License-Identifier: MIT
#include "bench/crypto_peers.h"

#include <nettle/aes.h>
#include <nettle/cbc.h>
#include <nettle/sha2.h>

namespace {

void encrypt(message &m, size_t size)
{
    aes128_ctx ctx;
    iv_copy iv{m};
    aes128_set_encrypt_key(&ctx, m.key);
    cbc_aes128_encrypt(&ctx, iv.bytes, size, m.data, m.data);
}

void decrypt(message &m, size_t size)
{
    struct CBC_CTX(aes128_ctx, AES_BLOCK_SIZE) ctx;
    aes128_set_decrypt_key(&ctx.ctx, m.key);
    CBC_SET_IV(&ctx, m.iv);
    CBC_DECRYPT(&ctx, aes128_decrypt, size, m.data, m.data);
}

void hash(message &m, size_t size)
{
    sha256_ctx ctx;
    sha256_init(&ctx);
    sha256_update(&ctx, size, m.data);
    sha256_digest(&ctx, SHA256_DIGEST_SIZE, m.digest);
}

} // namespace

const crypto_peer nettle_peer = {"nettle", encrypt, decrypt, hash};
