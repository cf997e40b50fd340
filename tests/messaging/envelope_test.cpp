// SPDX-License-Identifier: MIT
#include "core/owner.h"
#include "tests/messaging/sealed.h"
#include "tests/support/captured_log.h"
#include "tests/support/device.h"
#include "tests/support/failing_memory.h"

namespace {

struct vexa_protocol_ctrl context(const sealed &from = {})
{
    struct vexa_protocol_ctrl ctx = {};
    memcpy(ctx.key, from.key.data(), 16);
    memcpy(ctx.device_id, from.device_id.data(), 6);
    ctx.tx_seq = uint16_t(0xf000 | from.sequence);
    return ctx;
}

bytes seal(const bytes &plain, int encrypt, const struct vexa_protocol_ctrl &ctx)
{
    const unique_malloc<envelope> made{gen_payload(plain.data(), int(plain.size()), 9, 1, encrypt, &ctx)};
    const auto *p = reinterpret_cast<const uint8_t *>(made.get());
    return p ? bytes{p, p + 40 + (p[6] << 8 | p[7])} : bytes{};
}

// What dec_payload() makes of bytes that stand at an odd address, with nothing behind them.
int open(const bytes &datagram, const struct vexa_protocol_ctrl &ctx, std::string *payload = nullptr)
{
    const unique_malloc<uint8_t> copy{static_cast<uint8_t *>(malloc(datagram.size() + 1))};
    uint8_t *p = copy.get() + 1;
    std::copy(datagram.begin(), datagram.end(), p);
    const int result = dec_payload(int(datagram.size()), reinterpret_cast<envelope *>(p), &ctx);
    envelope header;
    if (result != 0 || !payload)
        return result;
    memcpy(&header, p, sizeof header);
    EXPECT_EQ(header.sequence, 7);
    EXPECT_EQ(header.method, 9);
    payload->assign(reinterpret_cast<char *>(p) + 40, header.length);
    return 0;
}

} // namespace

TEST(gen_payload, is_byte_for_byte_what_others_build)
{
    sealed other;
    for (const size_t size : {1U, 15U, 16U, 17U, 500U, 65519U}) {
        SCOPED_TRACE(size);
        const bytes plain = random_bytes(size), made = seal(plain, 1, context());
        ASSERT_GE(made.size(), 40u);
        other.iv.assign(made.begin() + 12, made.begin() + 28);
        other.padded = pad(plain);
        EXPECT_TRUE(made == other.datagram());
        std::string opened;
        EXPECT_EQ(open(made, context(), &opened), 0);
        EXPECT_TRUE(opened == std::string(plain.begin(), plain.end()));
    }
    EXPECT_NE(seal({1}, 1, context()), seal({1}, 1, context())) << "the IV is fresh";
    EXPECT_EQ(open(seal({}, 1, context()), context()), 1) << "40 bytes, length 0";
    for (const int encrypt : {0, 2}) { // plain, and flagged as encrypted all the same
        bytes expected = from_hex("22334455020" + std::to_string(encrypt ? 2 : 1) +
                                  "00020009000100000000000000000000"
                                  "00000000000002565800000100700000"
                                  "00006869");
        EXPECT_EQ(seal({'h', 'i'}, encrypt, context()), expected);
    }
}

TEST(gen_payload, refuses_what_does_not_fit)
{
    const auto ctx = context();
    const bytes much(65536);
    EXPECT_EQ(gen_payload(much.data(), -1, 1, 1, 1, &ctx), nullptr);
    EXPECT_EQ(gen_payload(much.data(), 65520, 1, 1, 1, &ctx), nullptr);
    EXPECT_EQ(gen_payload(much.data(), 65536, 1, 1, 0, &ctx), nullptr);
    EXPECT_EQ(gen_payload(much.data(), INT_MAX, 1, 1, 1, &ctx), nullptr);
    EXPECT_EQ(seal(bytes(65535), 0, ctx).size(), 40u + 65535);
    const captured_log log{4};
    {
        const failing_memory none{0};
        EXPECT_EQ(gen_payload("x", 1, 1, 1, 1, &ctx), nullptr);
    }
    {
        const failing_memory no_second{1};
        free(gen_payload("x", 1, 1, 1, 1, &ctx));
        EXPECT_FALSE(failing_memory::has_failed());
    }
    EXPECT_EQ(log.text(), "[error] libvexa.gen_payload(): hdr malloc fail\n");
}

TEST(dec_payload, judges_a_datagram)
{
    const auto changed = [](auto change) {
        sealed from;
        from.padded = pad({'h', 'e', 'l', 'l', 'o'});
        change(from);
        return from.datagram();
    };
    const bytes good = changed([](sealed &) {});
    bytes corrupted = good, longer = good, forged = good, lying(39);
    corrupted[45] ^= 1;
    longer.push_back(0);
    forged.resize(40 + 5);
    forged[7] = 5;
    lying[6] = lying[7] = 0xff;
    const std::string length_line = "[debug] libvexa.dec_payload(): packet length check fail\n";
    const struct {
        const char *why;
        bytes datagram;
        uint16_t rx_seq;
        int result;
        std::string payload, log;
    } rows[] = {
        {"good", good, 0, 0, "hello", ""},
        {"the last number again", good, 7, 2, "", ""},
        {"a method that repeats", changed([](sealed &s) { s.method = 5; }), 7, 0, "", ""},
        {"a duplicate comes before the magic", changed([](sealed &s) { s.magic = 1; }), 7, 2, "", ""},
        {"magic", changed([](sealed &s) { s.magic++; }), 0, 1, "", ""},
        {"plain", changed([](sealed &s) { s.flags = 1; }), 0, 1, "", ""},
        {"other flags, too", changed([](sealed &s) { s.flags = 0xff; }), 0, 0, "hello", ""},
        {"empty", changed([](sealed &s) { s.padded = {}; }), 0, 1, "", ""},
        {"version 1", changed([](sealed &s) { s.version = 1; }), 0, 1, "", ""},
        {"version 3", changed([](sealed &s) { s.version = 3; }), 0, 0, "hello", ""},
        {"no padding", changed([](sealed &s) { s.padded = bytes(16); }), 0, 0, std::string(16, '\0'), ""},
        {"more than a block", changed([](sealed &s) { s.padded = bytes(32, 32); }), 0, 0, "", ""},
        {"more than there is", changed([](sealed &s) { s.padded = bytes(16, 17); }), 0, 1, "", ""},
        {"uneven padding", changed([](sealed &s) { s.padded[8] = 1; }), 0, 1, "", ""},
        {"plain text of an odd length",
         changed([](sealed &s) {
             s.padded = {'h', 'i', 0};
         }),
         0,
         0,
         {"hi\0", 3},
         ""},
        {"a byte behind it", longer, 0, 1, "", length_line},
        {"nothing", {}, 0, 1, "", length_line},
        {"39 bytes, length 65535", lying, 0, 1, "", length_line},
    };
    for (const auto &row : rows) {
        SCOPED_TRACE(row.why);
        auto ctx = context();
        ctx.rx_seq = row.rx_seq;
        std::string payload;
        const captured_log log;
        EXPECT_EQ(open(row.datagram, ctx, row.payload.empty() ? nullptr : &payload), row.result);
        EXPECT_EQ(payload, row.payload);
        EXPECT_EQ(log.text(), row.log);
        EXPECT_EQ(ctx.rx_seq, row.rx_seq);
    }
    const captured_log log;
    EXPECT_EQ(open(corrupted, context()), 1);
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
        ASSERT_NE(open(datagram, context()), 0) << length;
    }
}

TEST(generate_anonClientId, digests_address_and_text)
{
    const bytes mac = from_hex("02565800abcd");
    char id[33] = "untouched";
    EXPECT_EQ(generate_anonClientId(id, mac.data(), ""), -EINVAL);
    EXPECT_STREQ(id, "untouched");
    for (const std::string text : {"x", "aaaaaaaa-bbbb-4ccc-8ddd-eeeeeeeeeeee"}) {
        bytes message = mac, digest(32);
        message.insert(message.end(), text.begin(), text.end());
        EVP_Digest(message.data(), message.size(), digest.data(), nullptr, EVP_sha256(), nullptr);
        char expected[65];
        uchar2lowerhex(digest.data(), 15, expected, sizeof expected);
        EXPECT_EQ(generate_anonClientId(id, mac.data(), text.c_str()), 0);
        EXPECT_STREQ(id, expected);
    }
}
