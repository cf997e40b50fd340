// SPDX-License-Identifier: MIT
#include "tests/support/device.h"

TEST(trimming, knows_six_blanks_and_one_side_each)
{
    char text[] = " a\xa0 \t\n\v\f\r";
    trim_trailing(text, int(strlen(text)));
    EXPECT_STREQ(text, " a\xa0") << "a no-break space is no blank";
    trim_trailing(text, 1);
    EXPECT_STREQ(text, "");

    char stored[7] = "before";
    const auto trimmed = [&stored](const char *source, size_t size) {
        strncpy_trim(stored, size, source);
        return stored;
    };
    EXPECT_STREQ(trimmed("abc", 0), "before");
    EXPECT_STREQ(trimmed("\t\n\v\f\r b  ", 7), "b  ");
    EXPECT_STREQ(trimmed("abcdef", 4), "abc");
    EXPECT_STREQ(trimmed(" abc", 4), "abc");
    EXPECT_STREQ(trimmed(nullptr, 7), "");
}

TEST(url_encode, keeps_only_what_is_unreserved)
{
    const std::unique_ptr<char, decltype(&free)> encoded{url_encode("aZ09-._~ b&c/\xc3\xa9\n%"), free};
    EXPECT_STREQ(encoded.get(), "aZ09-._~+b%26c%2f%c3%a9%0a%25");
}

TEST(comment_out_lines, marks_each_line_that_holds_a_pattern)
{
    using namespace std::string_literals;
    const std::string longest(253, 'l');
    const std::string rows[][4] = {{"two patterns, empty ones mark nothing", "|foo||x", "foo\nbx\ny\n", "#oo\n#x\ny\n"},
                                   {"a last line without its feed", "b", "a\nb", "a\n#"},
                                   {"a zero byte is a character", "b", "a\0b\nc\nb\n"s, "#\0b\nc\n#\n"s},
                                   {"the longest line", "lb", longest + "b\nb\n", "#" + longest.substr(1) + "b\nb\n"},
                                   {"longer ones are passed over", "b", longest + "lb\nb\n", longest + "lb\n#\n"},
                                   {"longer at the end, too", "b", longest + "lb", longest + "lb"}};
    for (const auto &[why, patterns, before, after] : rows) {
        the_device.put("/tmp/lines", before);
        const std::unique_ptr<FILE, decltype(&fclose)> file{fopen("/tmp/lines", "r+"), fclose};
        EXPECT_EQ(comment_out_lines(file.get(), std::string{patterns}.data()), why[0] == 'l' ? -1 : 0) << why;
        EXPECT_EQ(the_device.text("/tmp/lines"), after) << why;
    }
    char pattern[] = "l";
    const std::unique_ptr<FILE, decltype(&pclose)> pipe{popen("echo l", "r"), pclose};
    EXPECT_EQ(comment_out_lines(pipe.get(), pattern), -1) << "it cannot go back";
}
