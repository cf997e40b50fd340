// SPDX-License-Identifier: MIT
#include "bench/crypto_peers.h"

#include <mbedtls/aes.h>
#include <mbedtls/sha256.h>

namespace {

void encrypt(message &m, size_t size)
{
    mbedtls_aes_context ctx;
    iv_copy iv{m};
    mbedtls_aes_init(&ctx);
    mbedtls_aes_setkey_enc(&ctx, m.key, 128);
    mbedtls_aes_crypt_cbc(&ctx, MBEDTLS_AES_ENCRYPT, size, iv.bytes, m.data, m.data);
    mbedtls_aes_free(&ctx);
}

void decrypt(message &m, size_t size)
{
    mbedtls_aes_context ctx;
    iv_copy iv{m};
    mbedtls_aes_init(&ctx);
    mbedtls_aes_setkey_dec(&ctx, m.key, 128);
    mbedtls_aes_crypt_cbc(&ctx, MBEDTLS_AES_DECRYPT, size, iv.bytes, m.data, m.data);
    mbedtls_aes_free(&ctx);
}

void hash(message &m, size_t size)
{
    mbedtls_sha256_ret(m.data, size, m.digest, 0);
}

} // namespace

const crypto_peer mbedtls_peer = {"mbedtls", encrypt, decrypt, hash};
