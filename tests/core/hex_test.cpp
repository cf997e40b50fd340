// SPDX-License-Identifier: MIT
#include "tests/support/device.h"

#include <random>

using testing::ElementsAre;

TEST(hex2uchar, takes_each_pair_as_scanf_does)
{
    std::mt19937 random{1};
    for (int round = 0; round < 5000; round++) {
        std::string text(1 + random() % 9, '\0');
        std::generate(text.begin(), text.end(), [&] { return " \t+-01aFg:"[random() % 10]; });
        unsigned char expected[3] = {}, bytes[3];
        for (size_t i = 0; i < 3 && 2 * i < text.size(); i++)
            if (sscanf(text.c_str() + 2 * i, "%2hhx", &expected[i]) != 1)
                break;
        ASSERT_EQ(hex2uchar(text.c_str(), bytes, sizeof bytes), 3);
        ASSERT_THAT(bytes, testing::ElementsAreArray(expected)) << text;
    }
    EXPECT_EQ(hex2uchar("", nullptr, 1), 0);
}

TEST(hexadecimal, is_written_within_the_room)
{
    constexpr unsigned char bytes[] = {0x0a, 0xff, 0x10};
    char text[8] = "kept";
    EXPECT_EQ(uchar2hex(bytes, 2, text, 4), 0) << "no room for the zero";
    EXPECT_EQ(uchar2hex(bytes, SIZE_MAX / 2 + 1, text, 6), 0) << "twice the length wraps around";
    EXPECT_EQ(bin2hex(bytes, 3, text, 0), 0);
    EXPECT_EQ(bin2hex(bytes, 0, text, 6), 0);
    EXPECT_STREQ(text, "kept");
    EXPECT_EQ(uchar2hex(bytes, 2, text, 8), 2);
    EXPECT_THAT(text, ElementsAre('0', 'A', 'F', 'F', 0, 0, 0, 0));
    EXPECT_EQ(uchar2lowerhex(bytes, 2, text, 5), 2);
    EXPECT_STREQ(text, "0aff");
    EXPECT_EQ(bin2hex(bytes, 3, text, 4), 2) << "a pair needs three bytes of room";
    EXPECT_EQ(bin2hex(bytes, 3, text, 8), 4) << "the last byte is left out";
}
