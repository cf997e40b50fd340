// SPDX-License-Identifier: MIT
#include "tests/config/config.h"

#include <cerrno>

TEST(numbers, are_read_like_those_of_C_and_else_the_default)
{
    constexpr std::tuple<const char *, int32_t, int32_t, uint32_t, int64_t> rows[] = {
        {"0x1f", 31, 0, 31, 31},
        {"010", 8, 10, 8, 8},
        {"abc", 5, 5, 5, 5},
        {"12abc", 12, 12, 12, 12},
        {"99999999999", 1215752191, 1215752191, 1215752191, 99999999999},
        {"99999999999999999999", 5, 5, 5, 5},
        {" -1", -1, -1, UINT32_MAX, -1}};
    for (const auto &[value, number, decimal, natural, wide] : rows) {
        const config cfg = config_of("k="s + value + "\n");
        const auto with_errno = [&](auto get, auto def) { return errno = EINVAL, get(cfg.get(), def, "k"); };
        EXPECT_EQ(with_errno(get_int32, 5), number) << value;
        EXPECT_EQ(with_errno(get_int32_dec, 5), decimal) << value;
        EXPECT_EQ(with_errno(get_uint32, 5U), natural) << value;
        EXPECT_EQ(with_errno(get_int64, int64_t{5}), wide) << value;
        errno = ERANGE;
        EXPECT_EQ(get_int32(cfg.get(), 5, "k"), 5) << "a range error of the past still counts";
    }
    EXPECT_EQ(get_int64(nullptr, INT64_MIN, "k"), INT64_MIN);
}

TEST(get_bool, knows_words_without_case_and_surrounding_blanks)
{
    constexpr std::pair<const char *, int> rows[] = {
        {"on", 1},  {"1", 1}, {"enable", 1},  {" Enabled\t", 1}, {"ACTIVE", 1},   {"true", 1},
        {"off", 0}, {"0", 0}, {"disable", 0}, {"disabled", 0},   {"INACTIVE", 0}, {"False", 0},
        {"yes", 7}, {"", 7},  {"on off", 7},  {"enabled\r", 7},  {"01", 7}};
    for (const auto &[value, expected] : rows)
        EXPECT_EQ(get_bool(config_of("k="s + value + "\n").get(), 7, "k"), expected) << value;
    EXPECT_EQ(get_bool(nullptr, 7, "k"), 7);
}

TEST(esc_value, escapes_once_what_a_shell_reads_inside_double_quotes)
{
    const config cfg = config_of("k=a`\\\"$\nnone=it's fine!\nk=x\n");
    EXPECT_STREQ(get_esc_value(cfg.get(), "def", "k"), "a\\`\\\\\\\"\\$");
    EXPECT_EQ(get_esc_value(cfg.get(), "def", "%c", 'K'), cfg->esc_value) << "kept in the entry";
    EXPECT_EQ(get_value(cfg.get(), "def", "K"), cfg->value) << "the first";
    EXPECT_STREQ(get_esc_value(cfg.get(), "def", "missing"), "def");
    cfg_entry *none = cfg->next;
    EXPECT_EQ(esc_value(none), none->value) << "nothing to escape, nothing to copy";

    free(none->value); // as a host replaces a value
    none->value = strdup("$5");
    none->esc_value = nullptr;
    EXPECT_STREQ(esc_value(none), "\\$5");
}

TEST(lookups, give_the_default_when_memory_runs_out)
{
    const config cfg = config_of("k=1$\n");
    const captured_log log;
    for (const size_t after : {0U, 1U}) {
        const failing_memory memory{after};
        EXPECT_STREQ(get_esc_value(cfg.get(), "def", "k"), "def");
    }
    EXPECT_EQ(log.text(), "[error] cfg.vget_value(): OOM\n[error] cfg.esc_value(): 507: malloc(4) failed\n");
    EXPECT_STREQ(get_esc_value(cfg.get(), "def", "k"), "1\\$") << "the next one tries again";
}
