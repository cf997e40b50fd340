// SPDX-License-Identifier: MIT
#include "tests/support/bytes.h"
#include "tests/support/device.h"

#include <openssl/evp.h>

namespace {

bytes by_openssl(const bytes &key, const bytes &iv, bytes data)
{
    int done = 0;
    EVP_CIPHER_CTX *ctx = EVP_CIPHER_CTX_new();
    EVP_EncryptInit_ex(ctx, EVP_aes_128_cbc(), nullptr, key.data(), iv.data());
    EVP_CIPHER_CTX_set_padding(ctx, 0);
    EVP_EncryptUpdate(ctx, data.data(), &done, data.data(), int(data.size()));
    EVP_CIPHER_CTX_free(ctx);
    return data;
}

} // namespace

TEST(aes_cbc_encrypt_128, gives_the_published_blocks)
{
    // SP 800-38A, F.2.1
    const bytes key = from_hex("2b7e151628aed2a6abf7158809cf4f3c");
    bytes iv = from_hex("000102030405060708090a0b0c0d0e0f"), data = from_hex("6bc1bee22e409f96e93d7e117393172a"
                                                                             "ae2d8a571e03ac9c9eb76fac45af8e51");
    ASSERT_EQ(aes_cbc_encrypt_128(key.data(), iv.data(), data.data(), data.size()), 0);
    EXPECT_EQ(data, from_hex("7649abac8119b246cee98e9b12e9197d5086cb9b507219ee95db113a917678b2"));
}

TEST(aes_cbc_encrypt_128, agrees_with_openssl_and_comes_back)
{
    for (size_t blocks = 1; blocks < 200; blocks++) {
        const bytes key = random_bytes(16), iv = random_bytes(16), plain = random_bytes(16 * blocks);
        bytes data = plain, iv_given = iv;
        ASSERT_EQ(aes_cbc_encrypt_128(key.data(), iv_given.data(), data.data(), data.size()), 0);
        ASSERT_EQ(data, by_openssl(key, iv, plain));
        ASSERT_EQ(aes_cbc_decrypt_128(key.data(), iv_given.data(), data.data(), data.size()), 0);
        ASSERT_EQ(data, plain);
        ASSERT_EQ(iv_given, iv);
    }
}

TEST(aes_cbc_encrypt_128, leaves_alone_what_is_not_whole_blocks)
{
    const bytes key(16), plain = random_bytes(32);
    for (const size_t len : {0U, 1U, 15U, 17U, 31U}) {
        SCOPED_TRACE(len);
        bytes data = plain;
        EXPECT_EQ(aes_cbc_encrypt_128(key.data(), key.data(), data.data(), len), len == 0 ? 0 : -1);
        EXPECT_EQ(aes_cbc_decrypt_128(key.data(), key.data(), data.data(), len), -1);
        EXPECT_EQ(data, plain);
    }
}
