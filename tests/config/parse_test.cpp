// SPDX-License-Identifier: MIT
#include "tests/config/config.h"

#include <algorithm>
#include <set>

namespace {

// Line by line, each override looked for from the head of the list.
std::string parse_by_line(const std::string &text)
{
    std::vector<std::pair<std::string, std::string>> list;
    bool in_misc = false;
    for (size_t at = 0, end; at < text.size(); at = end) {
        end = std::min(text.find('\n', at), text.size() - 1) + 1;
        const std::string line = text.substr(at, end - at);
        const size_t equals = line.find('=');
        in_misc = in_misc || line.compare(0, 6, "# misc") == 0;
        if (line[0] == '#' || line[0] == '\r' || equals == line.npos)
            continue;
        std::string key = line.substr(0, equals).c_str();
        key.erase(0, std::min(key.find_first_not_of(" \t"), key.size()));
        key.erase(key.find_last_not_of(" \t") + 1);
        const std::string value = line.substr(equals + 1, std::max<size_t>(line.size() - equals, 2) - 2).c_str();
        const auto same = [&](const auto &entry) { return strcasecmp(entry.first.c_str(), key.c_str()) == 0; };
        if (const auto earlier = std::ranges::find_if(list, same); in_misc && earlier != list.end())
            earlier->second = value;
        else
            list.emplace_back(key, value);
    }
    std::string all;
    for (const auto &[key, value] : list)
        all.append(key).append("=").append(value).append("\n");
    return all;
}

struct source {
    std::string text;
    size_t longest_read, at = 0;
};

// Ends with an error.
ssize_t give(void *cookie, char *to, size_t size)
{
    auto &from = *static_cast<source *>(cookie);
    const size_t got = from.text.copy(to, std::min(size, from.longest_read), from.at);
    from.at += got;
    return got > 0 ? ssize_t(got) : -1;
}

} // namespace

TEST(parse_stream, takes_lines_with_a_key_as_they_stand)
{
    const std::string rows[][3] = {
        {"what is no entry is passed over", "a=1\n#x=1\n\n\r=1\nnovalue\n", "a=1\n"},
        {"only the key is trimmed", " b\tc \t=x y \n", "b\tc=x y \n"},
        {"the first sign counts", "=k==v\r\n", "=k==v\r\n"},
        {"the last character of the last line is dropped, too", "k=abc", "k=ab\n"},
        {"where there is one", "k=", "k=\n"},
        {"an equal key is an entry of its own", "k=1\nk=2\n # misc\nk=3\n", "k=1\nk=2\nk=3\n"},
        {"until the marker", "K.1=a\nk.1=b\n# misc, and so on\nk.1=c\nn=1\nN=2\n", "K.1=c\nk.1=b\nn=2\n"},
        {"a zero byte ends key and value", "ab \0cd=v\0w\n"s, "ab=v\n"}};
    for (const auto &[why, text, entries] : rows)
        EXPECT_EQ(lines(config_of(text)), entries) << why;
    EXPECT_EQ(parse_stream(nullptr), nullptr);
    EXPECT_EQ(parse("/tmp/missing"), nullptr);
    EXPECT_EQ(parse("/tmp"), nullptr);
    EXPECT_GT(get_cfg_count(config{parse("/tmp/system.cfg"), free_cfg}.get()), 300U);
}

TEST(parse_stream, agrees_with_a_reading_by_line_from_where_the_stream_stands)
{
    std::mt19937 random{211};
    const std::vector<std::string> pieces = {"k",  "K1", "a.2", "=", "=",          " ",   "\t",   "\n",
                                             "\n", "\r", "#",   "Z", "\n# misc\n", "\0"s, "\xe9", std::string(40, 'x')};
    for (int i = 0; i < 3000; i++) {
        const std::string text = random_text(random, pieces, i % 100 == 0 ? 20000 : 60);
        ASSERT_EQ(lines(config_of(text)), parse_by_line(text)) << text;
        source from{"+" + text, 1 + random() % 5000};
        file stream{fopencookie(&from, "r", {.read = give, .write = nullptr, .seek = nullptr, .close = nullptr}),
                    fclose};
        ASSERT_EQ(fgetc(stream.get()), '+');
        const std::string whole_lines = text.substr(0, text.rfind('\n') + 1);
        ASSERT_EQ(lines(config_of(std::move(stream))), parse_by_line(whole_lines)) << "a broken stream: " << text;
    }
    std::string text;
    for (const size_t size : {16380U, 32763U, 32764U, 32765U, 1000000U})
        text += "k=" + std::string(size, 'v') + "\n";
    EXPECT_TRUE(lines(config_of(text)) == text) << "lines about as long as a piece, and longer";
}

TEST(parse_stream, gives_what_it_has_when_memory_runs_out)
{
    std::string text, log, got;
    std::set<std::string> after_each_line = {""};
    for (int i = 0; i < 100; i++) {
        text += i == 2 ? "# misc\n" : "k" + std::to_string(i % 60) + "=" + std::to_string(i) + "\n";
        after_each_line.insert(parse_by_line(text));
    }
    for (const size_t in_a_row : {size_t{1}, SIZE_MAX})
        for (size_t after = 0; after == 0 || failing_memory::has_failed(); after++) {
            const captured_log messages;
            file stream{fdopen(memory_file(text), "r"), fclose};
            std::optional<failing_memory> memory{std::in_place, after, in_a_row};
            const config cfg = config_of(std::move(stream));
            memory.reset();
            got = lines(cfg);
            ASSERT_TRUE(after_each_line.count(got)) << got;
            log += messages.text();
        }
    EXPECT_EQ(got, parse_by_line(text));
    for (const char *line : {"137: calloc(1, 32) failed", "143: malloc(24) failed", "149: malloc(24) failed"})
        EXPECT_NE(log.find("[error] cfg.parse_stream(): "s + line), log.npos) << line;
}
