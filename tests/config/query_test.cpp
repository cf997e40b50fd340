// SPDX-License-Identifier: MIT
#include "tests/config/config.h"
#include <algorithm>

constexpr char radios[] = "radio.1.mode=a\nradio.10.mode=b\nRadio.2.mode=x\nradio.2.mode=c\nradio.2.name=x\n"
                          "radio.03.mode=a\nradio.-4.mode=on\nradio.x.mode=a\nradio.5=TRUE\nradio.6=yes\nradio.7= on\n";

TEST(get_cfg_it, takes_a_whole_key_or_all_that_begin_with_the_text)
{
    const config cfg = config_of(radios);
    const std::tuple<int, const char *, std::string> rows[] = {
        {1, "radio.2.MODE", "Radio.2.mode=x\nradio.2.mode=c\n"}, // in any case
        {0, "radio.2", "radio.2.mode=c\nradio.2.name=x\n"},      // in its own
        {0, "", radios},
        {1, "radio.2", ""}};
    for (const auto &[exact, text, entries] : rows) {
        EXPECT_EQ(lines(results_of(get_cfg_it(cfg.get(), exact, "%s", text))), entries) << text;
        EXPECT_EQ(get_cfg_key_count(cfg.get(), exact, "%s", text), std::ranges::count(entries, '\n')) << text;
    }
    EXPECT_EQ(get_cfg_count(cfg.get()), 11U);
}

TEST(get_cfg_section, takes_numbered_keys_in_order)
{
    const config cfg = config_of(radios);
    const std::tuple<const char *, const char *, const char *, const char *, std::string> rows[] = {
        {"by number", "radio.", ".mode", nullptr,
         "radio.-4.mode=on\nradio.1.mode=a\nradio.2.mode=c\nradio.03.mode=a\nradio.10.mode=b\n"},
        {"the postfix in any case, the prefix in its own", "Radio.", ".MODE", nullptr, "Radio.2.mode=x\n"},
        {"of one value", "radio.", ".mode", "a", "radio.1.mode=a\nradio.03.mode=a\n"},
        {"in its own case", "radio.", ".mode", "A", ""},
        {"nothing behind the number", "radio.", nullptr, nullptr, "radio.5=TRUE\nradio.6=yes\nradio.7= on\n"},
        {"the postfix is all that follows", "radio.", ".mo", nullptr, ""},
        {"a number may go on behind the prefix", "radio.1", ".mode", nullptr, "radio.10.mode=b\n"},
        {"but does not begin with a dot", "radio", ".mode", nullptr, ""}};
    for (const auto &[why, prefix, postfix, value, entries] : rows) {
        EXPECT_EQ(lines(results_of(get_cfg_section(cfg.get(), postfix, value, "%s", prefix))), entries) << why;
        EXPECT_EQ(get_cfg_section_count(cfg.get(), postfix, value, "%s", prefix), std::ranges::count(entries, '\n'));
    }
    EXPECT_EQ(get_cfg_section_enabled_count(cfg.get(), nullptr, "radio."), 1U) << "blanks are not trimmed here";
}

TEST(queries, log_what_they_cannot_do_and_give_what_they_have)
{
    const config cfg = config_of(radios);
    const captured_log log;
    EXPECT_EQ(get_cfg_section(cfg.get(), "mode", nullptr, "radio."), nullptr);
    EXPECT_EQ(get_cfg_section_count(cfg.get(), "", nullptr, "radio."), 0U);
    EXPECT_EQ(get_cfg_section_count(cfg.get(), ".mode", nullptr, "%s", "radio"), 0U);
    cfg_it *some;
    for (const size_t after : {0U, 3U}) {
        const failing_memory memory{after};
        some = get_cfg_it(cfg.get(), 0, "radio");
        EXPECT_EQ(get_cfg_section_count(cfg.get(), nullptr, nullptr, "radio."), 0U);
    }
    EXPECT_EQ(lines(results_of(some)), "radio.1.mode=a\nradio.10.mode=b\n");
    EXPECT_EQ(log.text(),
              "[error] cfg.process_cfg_section(): postfix must start with '.': 'mode'\n"
              "[error] cfg.process_cfg_section(): postfix must start with '.': ''\n"
              "[warn ] cfg.process_cfg_section(): deprecated prefix doesn't end with '.': '%s' => 'radio'\n"
              "[error] cfg.process_cfg_it(): OOM\n[error] cfg.process_cfg_section(): OOM\n"
              "[error] cfg.append_cfg_match_cb(): 311: calloc(1, 32) failed\n[error] cfg.process_cfg_section(): OOM\n");
}
