// SPDX-License-Identifier: MIT
#define OPENSSL_SUPPRESS_DEPRECATED

#include "bench/crypto_peers.h"

#include <openssl/aes.h>
#include <openssl/evp.h>
#include <openssl/sha.h>

namespace {

void evp_cbc(message &m, size_t size, int encrypt)
{
    int done = 0;
    EVP_CIPHER_CTX *ctx = EVP_CIPHER_CTX_new();
    EVP_CipherInit_ex(ctx, EVP_aes_128_cbc(), nullptr, m.key, m.iv, encrypt);
    EVP_CIPHER_CTX_set_padding(ctx, 0);
    EVP_CipherUpdate(ctx, m.data, &done, m.data, int(size));
    EVP_CipherFinal_ex(ctx, m.data + done, &done);
    EVP_CIPHER_CTX_free(ctx);
}

void evp_encrypt(message &m, size_t size)
{
    evp_cbc(m, size, 1);
}
void evp_decrypt(message &m, size_t size)
{
    evp_cbc(m, size, 0);
}
void evp_hash(message &m, size_t size)
{
    EVP_Digest(m.data, size, m.digest, nullptr, EVP_sha256(), nullptr);
}

void low_encrypt(message &m, size_t size)
{
    AES_KEY schedule;
    iv_copy iv{m};
    AES_set_encrypt_key(m.key, 128, &schedule);
    AES_cbc_encrypt(m.data, m.data, size, &schedule, iv.bytes, AES_ENCRYPT);
}

void low_decrypt(message &m, size_t size)
{
    AES_KEY schedule;
    iv_copy iv{m};
    AES_set_decrypt_key(m.key, 128, &schedule);
    AES_cbc_encrypt(m.data, m.data, size, &schedule, iv.bytes, AES_DECRYPT);
}

void low_hash(message &m, size_t size)
{
    SHA256_CTX ctx;
    SHA256_Init(&ctx);
    SHA256_Update(&ctx, m.data, size);
    SHA256_Final(m.digest, &ctx);
}

} // namespace

const crypto_peer openssl_evp = {"openssl_evp", evp_encrypt, evp_decrypt, evp_hash};
const crypto_peer openssl_low = {"openssl_low", low_encrypt, low_decrypt, low_hash};
