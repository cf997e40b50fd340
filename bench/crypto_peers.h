// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>

// One implementation under the clock. Each call sets the key up afresh and works in place on m.data.

struct message {
    uint8_t key[16] = {0x2b, 0x7e, 0x15, 0x16, 0x28, 0xae, 0xd2, 0xa6, 0xab, 0xf7, 0x15, 0x88, 0x09, 0xcf, 0x4f, 0x3c};
    uint8_t iv[16] = {};
    alignas(64) uint8_t data[4096] = {};
    uint8_t digest[32] = {};
};

using work = void (*)(message &m, size_t size);

struct crypto_peer {
    const char *name;
    work encrypt, decrypt, hash;
};

struct iv_copy { // most modes write their IV
    explicit iv_copy(const message &m) { memcpy(bytes, m.iv, sizeof bytes); }
    uint8_t bytes[16];
};

extern const crypto_peer openssl_evp, openssl_low, nettle_peer, mbedtls_peer;
