// SPDX-License-Identifier: MIT
#include "tests/support/device.h"

#include <openssl/evp.h>
#include <random>

using bytes = std::vector<unsigned char>;

static bytes decoded(const std::string &text, size_t length)
{
    bytes data(base64_decode_len(text.c_str()), 1);
    base64_decode(data.data(), text.c_str());
    EXPECT_EQ(data.at(length), 0) << text;
    data.resize(length);
    return data;
}

TEST(base64, agrees_with_openssl_at_every_length)
{
    std::mt19937 random{1};
    for (unsigned length = 1; length < 300; length++) {
        bytes data(length), expected(length * 4 / 3 + 5);
        std::generate(data.begin(), data.end(), std::ref(random));
        expected.resize(size_t(EVP_EncodeBlock(expected.data(), data.data(), int(length))));
        std::string text(base64_encode_len(length) - 1, '\0');
        base64rfc_encode(text.data(), data.data(), length);
        ASSERT_EQ(text, std::string(expected.begin(), expected.end()));
        ASSERT_EQ(decoded(text, length), data);
        std::replace(expected.begin(), expected.end(), '+', '-');
        std::replace(expected.begin(), expected.end(), '/', '_');
        base64url_encode(text.data(), data.data(), length);
        ASSERT_EQ(text.c_str(), std::string(expected.begin(), std::find(expected.begin(), expected.end(), '=')));
        ASSERT_EQ(decoded(text, length), data);
    }
    EXPECT_EQ(base64_encode_len(3221225469u), 4294967293u);
    EXPECT_EQ(base64_encode_len(3221225470u), 0u) << "no unsigned number can count it";
}

TEST(base64_decode, ends_at_the_first_character_of_neither_alphabet)
{
    for (const char *text : {"SGkh", "SGkh\nSGkh", "SGkh\xc3SGkh", "SGkhS", "SGkhS=Gk"})
        EXPECT_EQ(decoded(text, 3), (bytes{'H', 'i', '!'}));
    EXPECT_EQ(decoded("SG=kSGkh", 1), bytes{'H'});
    EXPECT_EQ(decoded("-_+/", 3), (bytes{0xfb, 0xff, 0xbf})) << "both alphabets may be mixed";
}
