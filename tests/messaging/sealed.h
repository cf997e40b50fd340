// SPDX-License-Identifier: MIT
#pragma once

#include "tests/support/bytes.h"

#include <openssl/evp.h>
#include <zlib.h>

// Envelopes built from the description of their wire form with other people's cipher and checksum.

struct sealed {
    bytes key = from_hex("0123456789abcdeffedcba9876543210");
    uint32_t magic = 0x22334455;
    uint8_t version = 2, flags = 2;
    uint16_t method = 9, type = 1, sequence = 7;
    bytes iv = from_hex("00112233445566778899aabbccddeeff");
    bytes device_id = from_hex("025658000001");
    bytes padded; // plain text with its padding
    uint32_t wrong_crc = 0;

    bytes datagram() const
    {
        const uint32_t crc = uint32_t(crc32(0, padded.data(), uInt(padded.size()))) ^ wrong_crc;
        bytes out;
        const auto put = [&out](uint32_t value, int size) {
            while (size-- > 0)
                out.push_back(uint8_t(value >> 8 * size));
        };
        put(magic, 4), put(version, 1), put(flags, 1), put(uint32_t(padded.size()), 2), put(method, 2), put(type, 2);
        out.insert(out.end(), iv.begin(), iv.end());
        out.insert(out.end(), device_id.begin(), device_id.end());
        put(uint32_t(sequence << 4), 2), put(crc, 4);
        const bytes payload = crypt(padded, 1);
        out.insert(out.end(), payload.begin(), payload.end());
        return out;
    }

    bytes crypt(const bytes &in, int encrypt) const
    {
        bytes out(in.size() + 16);
        int size = 0;
        if (in.size() % 16)
            return in;
        EVP_CIPHER_CTX *ctx = EVP_CIPHER_CTX_new();
        EVP_CipherInit_ex(ctx, EVP_aes_128_cbc(), nullptr, key.data(), iv.data(), encrypt);
        EVP_CIPHER_CTX_set_padding(ctx, 0);
        EVP_CipherUpdate(ctx, out.data(), &size, in.data(), int(in.size()));
        EVP_CIPHER_CTX_free(ctx);
        out.resize(size_t(size));
        return out;
    }
};

inline bytes pad(bytes out)
{
    const uint8_t count = uint8_t(16 - out.size() % 16);
    out.insert(out.end(), count, count);
    return out;
}
