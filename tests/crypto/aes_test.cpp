// SPDX-License-Identifier: MIT
#include "tests/support/bytes.h"
#include "tests/support/device.h"

const runs_on machine{the_machine};

TEST(rijndael_set_key, takes_the_three_sizes_of_the_standard)
{
    const bytes plain = from_hex("00112233445566778899aabbccddeeff");
    const bytes key = from_hex("000102030405060708090a0b0c0d0e0f101112131415161718191a1b1c1d1e1f");
    const struct {
        int bits, rounds;
        const char *cipher; // FIPS-197, appendix C
    } rows[] = {
        {128, 10, "69c4e0d86a7b0430d8cdb78070b4c55a"},
        {192, 12, "dda97ca4864cdfe06eaf70a0ec0d7191"},
        {256, 14, "8ea2b7ca516745bfeafc49904b496089"},
    };
    for (const auto &row : rows) {
        SCOPED_TRACE(row.bits);
        rijndael_ctx ctx{};
        uint32_t schedule[60];
        bytes block = plain;
        ASSERT_EQ(rijndael_set_key(&ctx, key.data(), row.bits), 0);
        EXPECT_EQ(ctx.Nr, row.rounds);
        EXPECT_EQ(ctx.enc_only, 0);
        rijndael_encrypt(&ctx, block.data(), block.data());
        EXPECT_EQ(block, from_hex(row.cipher));
        rijndael_decrypt(&ctx, block.data(), block.data());
        EXPECT_EQ(block, plain);

        EXPECT_EQ(rijndaelKeySetupDec(schedule, key.data(), row.bits), row.rounds);
        EXPECT_TRUE(std::equal(schedule, schedule + size_t(row.rounds + 1) * 4, ctx.dk));
        EXPECT_EQ(rijndaelKeySetupEnc(schedule, key.data(), row.bits), row.rounds);
        rijndaelEncrypt(schedule, row.rounds, plain.data(), block.data());
        EXPECT_EQ(block, from_hex(row.cipher));
        ASSERT_EQ(rijndael_set_key_enc_only(&ctx, key.data(), row.bits), 0);
        EXPECT_EQ(ctx.enc_only, 1);
    }
}
