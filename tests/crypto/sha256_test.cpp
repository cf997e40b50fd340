// SPDX-License-Identifier: MIT
#include "tests/support/bytes.h"
#include "tests/support/device.h"

#include <openssl/sha.h>

namespace {

bytes digest_of(const bytes &message)
{
    bytes digest(32);
    sha256(message.data(), uint32_t(message.size()), digest.data());
    return digest;
}

} // namespace

TEST(sha256, gives_the_published_digests)
{
    const struct {
        std::string message;
        const char *digest;
    } rows[] = {
        {"", "e3b0c44298fc1c149afbf4c8996fb92427ae41e4649b934ca495991b7852b855"},
        {"abc", "ba7816bf8f01cfea414140de5dae2223b00361a396177a9cb410ff61f20015ad"},
        {"abcdbcdecdefdefgefghfghighijhijkijkljklmklmnlmnomnopnopq",
         "248d6a61d20638b8e5c026930c3e6039a33ce45964ff2167f6ecedd419db06c1"},
        {std::string(1000000, 'a'), "cdc76e5c9914fb9281a1c7e284d73e67f1809a48a497200e046d39ccc7112cd0"},
    };
    for (const auto &row : rows) {
        SCOPED_TRACE(row.digest);
        EXPECT_EQ(digest_of({row.message.begin(), row.message.end()}), from_hex(row.digest));
    }
}

TEST(sha256, agrees_with_openssl_at_every_length_around_the_blocks)
{
    for (size_t len = 0; len < 300; len++) {
        const bytes message = random_bytes(len);
        bytes expected(32);
        SHA256(message.data(), len, expected.data());
        ASSERT_EQ(digest_of(message), expected) << len;
    }
}

TEST(sha256_update, takes_a_message_in_pieces_of_any_size)
{
    const bytes message = random_bytes(1000);
    for (size_t piece = 1; piece < 200; piece++) {
        sha256_ctx ctx;
        sha256_init(&ctx);
        bytes digest(32);
        for (size_t at = 0; at < message.size(); at += piece)
            sha256_update(&ctx, message.data() + at, uint32_t(std::min(piece, message.size() - at)));
        ASSERT_EQ(ctx.tot_len + ctx.len, message.size());
        sha256_final(&ctx, digest.data());
        ASSERT_EQ(digest, digest_of(message)) << piece;
    }
}
