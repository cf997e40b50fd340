// SPDX-License-Identifier: MIT
#include "tests/config/config.h"

#include <algorithm>
#include <ctime>

// Each key looked up in the other configuration.
static std::string diff_by_lookup(const config &before, const config &after)
{
    std::string changes;
    const auto add = [&](const cfg_entry *e, const char *unless) {
        const char *dot = strrchr(e->key, '.');
        if ((!dot || strcmp(dot, ".comment") != 0) && (!unless || strcmp(unless, e->value) != 0))
            changes.append(e->key).append("=").append(e->value).append("\n");
    };
    for (const cfg_entry *e = after.get(); e; e = e->next)
        add(e, get_value(before.get(), nullptr, "%s", e->key));
    for (const cfg_entry *e = before.get(); e; e = e->next)
        add(e, get_value(after.get(), nullptr, "%s", e->key) ? e->value : nullptr);
    return changes;
}

TEST(get_cfg_diff_it, lists_what_a_lookup_of_each_key_tells_in_order)
{
    std::mt19937 random{222};
    const std::vector<std::string> pieces = {"a",    "A",    "1",   "01",        ".",         ".comment", ".Comment",
                                             "=x\n", "=y\n", "=\n", "wireless.", "Wireless.", "security"};
    for (int i = 0; i < 2000; i++) {
        const config before = config_of(random_text(random, pieces, 300));
        const config after = config_of(random_text(random, pieces, 300));
        ASSERT_EQ(lines(results_of(get_cfg_diff_it(before.get(), after.get()))), diff_by_lookup(before, after));
    }
    const config before = config_of("same=1\nchanged=1\ngone.2=x\nGONE.1=y\nx.comment=1\ncomment=1\nTwice=1\n");
    const config after = config_of("added=2\ncomment=2\nchanged=2\nSAME=1\nx.comment=2\ntwice=1\ntwice=2\n");
    EXPECT_EQ(lines(results_of(get_cfg_diff_it(before.get(), after.get()))),
              "added=2\ncomment=2\nchanged=2\ntwice=2\ngone.2=x\nGONE.1=y\n");
}

TEST(get_cfg_diff_it, stays_linear_and_so_does_a_parse_behind_the_marker)
{
    std::string before = "# misc\n", after;
    for (int i = 0; i < 100000; i++) {
        before += "section." + std::to_string(i) + ".key=1\n";
        after += "SECTION." + std::to_string(99999 - i) + (i % 2 ? ".key=2\n" : ".other=1\n");
    }
    const clock_t start = clock();
    const config a = config_of(before + before), b = config_of(after + before);
    EXPECT_EQ(get_cfg_count(a.get()), 100000U);
    EXPECT_EQ(get_cfg_count(b.get()), 150000U);
    EXPECT_EQ(std::ranges::count(lines(results_of(get_cfg_diff_it(a.get(), b.get()))), '\n'), 50000);
    EXPECT_LT(double(clock() - start) / CLOCKS_PER_SEC, 8) << "a walk for each key takes many times as long";
}
