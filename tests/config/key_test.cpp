// SPDX-License-Identifier: MIT
#include "tests/config/config.h"

// Position by position, each number read anew.
static int compare_by_position(const char *a, const char *b)
{
    const auto weight = [](const char *s) {
        return isdigit(*s) ? 256 + strtoull(s, nullptr, 10) : uint64_t(tolower(static_cast<unsigned char>(*s)));
    };
    for (; *a && *b; a++, b++)
        if (weight(a) != weight(b))
            return weight(a) < weight(b) ? -1 : 1;
    return *a ? 1 : *b ? -1 : 0;
}

TEST(cfg_natural_compare, agrees_with_a_walk_by_position_and_is_an_order)
{
    std::mt19937 random{2101};
    for (int i = 0; i < 200000; i++) {
        std::string keys[3];
        for (std::string &key : keys)
            key = random_text(random, {"0", "0", "1", "2", "a", "A", "b", ".", "\x7f", "\xc9", "\xe9"}, 7);
        const auto &[a, b, c] = keys;
        const int ab = cfg_natural_compare(a.c_str(), b.c_str()), bc = cfg_natural_compare(b.c_str(), c.c_str());
        ASSERT_EQ(ab, compare_by_position(a.c_str(), b.c_str())) << a << " " << b;
        ASSERT_EQ(ab == 0, strcasecmp(a.c_str(), b.c_str()) == 0) << a << " " << b;
        ASSERT_TRUE(ab > 0 || bc > 0 || cfg_natural_compare(a.c_str(), c.c_str()) <= 0) << a << " " << b << " " << c;
    }
}

TEST(cfg_natural_compare, takes_numbers_of_any_size_and_no_text_at_all)
{
    const std::string run(4'000'000, '7'); // number by number at each position would take for ever
    for (const auto &[a, b] : {std::pair{run + "7.x", run + "8.a"}, {run + ".a", run + ".x"}, {run, "0" + run}}) {
        EXPECT_EQ(cfg_natural_compare(a.c_str(), b.c_str()), -1);
        EXPECT_EQ(cfg_natural_compare(b.c_str(), a.c_str()), 1);
    }
    EXPECT_EQ(cfg_natural_compare(nullptr, ""), -1);
    EXPECT_EQ(cfg_natural_compare("", nullptr), 1);
    EXPECT_EQ(cfg_natural_compare(nullptr, nullptr), 0);
}
