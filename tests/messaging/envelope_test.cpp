// SPDX-License-Identifier: MIT
#include "core/owner.h"
#include "tests/messaging/sealed.h"
#include "tests/support/captured_log.h"
#include "tests/support/device.h"
#include "tests/support/failing_memory.h"

namespace {

struct vexa_protocol_ctrl context(uint16_t heard = 0)
{
    const sealed from;
    struct vexa_protocol_ctrl ctx = {};
    memcpy(ctx.key, from.key.data(), 16);
    memcpy(ctx.device_id, from.device_id.data(), 6);
    ctx.tx_seq = uint16_t(0xf000 | from.sequence);
    ctx.rx_seq = heard;
    return ctx;
}

bytes seal(const bytes &plain, int encrypt)
{
    const auto ctx = context();
    const unique_malloc<envelope> made{gen_payload(plain.data(), int(plain.size()), 9, 1, encrypt, &ctx)};
    const auto *p = reinterpret_cast<const uint8_t *>(made.get());
    return p ? bytes{p, p + 40 + (p[6] << 8 | p[7])} : bytes{};
}

// What dec_payload() makes of bytes that stand at an odd address, with nothing behind them.
int open(const bytes &datagram, bytes *payload = nullptr, uint16_t heard = 0)
{
    const auto ctx = context(heard);
    const unique_malloc<uint8_t> copy{static_cast<uint8_t *>(malloc(datagram.size() + 1))};
    uint8_t *p = copy.get() + 1;
    std::copy(datagram.begin(), datagram.end(), p);
    const int result = dec_payload(int(datagram.size()), reinterpret_cast<envelope *>(p), &ctx);
    envelope header;
    if (result == 0 && payload) {
        memcpy(&header, p, sizeof header);
        EXPECT_EQ(header.sequence, 7);
        payload->assign(p + 40, p + 40 + header.length);
    }
    EXPECT_EQ(ctx.rx_seq, heard);
    return result;
}

} // namespace

TEST(gen_payload, is_byte_for_byte_what_others_build)
{
    sealed other;
    for (const size_t size : {1U, 15U, 16U, 17U, 500U, 65519U}) {
        SCOPED_TRACE(size);
        const bytes plain = random_bytes(size), made = seal(plain, 1);
        ASSERT_GE(made.size(), 40u);
        other.iv.assign(made.begin() + 12, made.begin() + 28);
        other.padded = pad(plain);
        EXPECT_TRUE(made == other.datagram());
        bytes opened;
        EXPECT_EQ(open(made, &opened), 0);
        EXPECT_TRUE(opened == plain);
    }
    EXPECT_NE(seal({1}, 1), seal({1}, 1)) << "the IV is fresh";
    for (const char *flags : {"01", "02"}) // plain, and flagged as encrypted all the same
        EXPECT_EQ(seal({'h', 'i'}, flags[1] - '1' ? 2 : 0),
                  from_hex("2233445502" + std::string{flags} + "000200090001" + std::string(32, '0') +
                           "0256580000010070000000006869"));
}

TEST(gen_payload, refuses_what_does_not_fit)
{
    const auto ctx = context();
    const bytes much(65536);
    for (const auto &[len, encrypt] : {std::pair{-1, 1}, {65520, 1}, {65536, 0}, {INT_MAX, 1}})
        EXPECT_EQ(gen_payload(much.data(), len, 1, 1, encrypt, &ctx), nullptr) << len;
    EXPECT_EQ(seal(bytes(65535), 0).size(), 40u + 65535);
    const captured_log log{4};
    for (const size_t allocations : {1U, 0U}) { // one is enough
        const failing_memory after{allocations};
        const unique_malloc<envelope> made{gen_payload("x", 1, 1, 1, 1, &ctx)};
        EXPECT_EQ(made != nullptr, !failing_memory::has_failed());
        EXPECT_EQ(made != nullptr, allocations == 1);
    }
    EXPECT_EQ(log.text(), "[error] libvexa.gen_payload(): hdr malloc fail\n");
}

TEST(dec_payload, judges_a_datagram)
{
    const bytes text{'h', 'e', 'l', 'l', 'o'}, hello = pad(text), block(16), odd{'h', 'i', 0};
    bytes uneven = hello;
    uneven[8] = 1;
    const struct {
        const char *why;
        uint16_t heard;
        sealed from;
        int result;
        bytes payload;
    } rows[] = {
        {"good", 0, {.padded = hello}, 0, text},
        {"the last number again", 7, {.padded = hello}, 2, {}},
        {"a method that repeats", 7, {.method = 5, .padded = hello}, 0, text},
        {"a duplicate comes before the magic", 7, {.magic = 1, .padded = hello}, 2, {}},
        {"magic", 0, {.magic = 0x22334456, .padded = hello}, 1, {}},
        {"plain", 0, {.flags = 0xfd, .padded = hello}, 1, {}},
        {"empty", 0, {}, 1, {}},
        {"version 1", 0, {.version = 1, .padded = hello}, 1, {}},
        {"version 3, and other flags", 0, {.version = 3, .flags = 0xff, .padded = hello}, 0, text},
        {"no padding", 0, {.padded = block}, 0, block},
        {"more than a block", 0, {.padded = bytes(32, 32)}, 0, {}},
        {"more than there is", 0, {.padded = bytes(16, 17)}, 1, {}},
        {"uneven padding", 0, {.padded = uneven}, 1, {}},
        {"plain text of an odd length", 0, {.padded = odd}, 0, odd},
    };
    const captured_log log;
    for (const auto &row : rows) {
        bytes payload;
        EXPECT_EQ(open(row.from.datagram(), &payload, row.heard), row.result) << row.why;
        EXPECT_EQ(payload, row.payload) << row.why;
    }
    EXPECT_EQ(log.text(), "");
    EXPECT_EQ(open(sealed{.padded = hello, .wrong_crc = 1}.datagram()), 1);
    EXPECT_THAT(log.text(),
                testing::MatchesRegex(R"(\[debug\] libvexa.dec_payload\(\): hdr=-?[0-9]+, crc32=-?[0-9]+.)"));
}

TEST(dec_payload, reads_no_byte_beyond_the_datagram)
{
    for (int length = 0; length <= 65535; length += length < 600 ? 1 : 641) {
        bytes datagram = random_bytes(size_t(length));
        if (length >= 40) {
            const bytes beginning = from_hex("223344550202"); // as far as the cipher, whatever the length
            std::copy(beginning.begin(), beginning.end(), datagram.begin());
            datagram[6] = uint8_t((length - 40) >> 8);
            datagram[7] = uint8_t(length - 40);
        }
        ASSERT_NE(open(datagram), 0) << length;
    }
    const captured_log log;
    EXPECT_EQ(open(bytes(41)), 1);
    EXPECT_EQ(log.text(), "[debug] libvexa.dec_payload(): packet length check fail\n");
}

TEST(generate_anonClientId, digests_address_and_text)
{
    const bytes mac = from_hex("02565800abcd");
    char id[33] = "untouched";
    EXPECT_EQ(generate_anonClientId(id, mac.data(), ""), -EINVAL);
    EXPECT_STREQ(id, "untouched");
    EXPECT_EQ(generate_anonClientId(id, mac.data(), "aaaaaaaa-bbbb-4ccc-8ddd-eeeeeeeeeeee"), 0);
    EXPECT_STREQ(id, "af30febb0509b875eaa2718d07ac6a"); // as sha256sum says
}
