// SPDX-License-Identifier: MIT
#include "sim/driver/lines.h"

#include "sim/error.h"

#include <algorithm>
#include <sstream>

namespace sim::driver {

namespace {

// `text` stands behind a backslash; what was read of it is taken away.
char escaped(std::string_view &text)
{
    char c = text.front();
    text.remove_prefix(1);
    if (c == 'x' && text.size() >= 2) {
        c = char(strtoul(std::string(text.data(), 2).c_str(), nullptr, 16));
        text.remove_prefix(2);
    }
    return c;
}

// The words of a line: quotes hold blanks together, "\xNN" is a byte, "#" begins what is for people.
std::vector<std::string> words_of(std::string_view text)
{
    std::vector<std::string> words;
    bool quoted = false, inside = false;
    while (!text.empty()) {
        const char c = text.front();
        const bool blank = !quoted && (c == ' ' || c == '\t' || c == '\r');
        if (c == '#' && !inside)
            break;
        text.remove_prefix(1);
        if (!blank && !inside)
            words.emplace_back();
        inside = !blank;
        if (c == '"')
            quoted = !quoted;
        else if (quoted && c == '\\' && !text.empty())
            words.back() += escaped(text);
        else if (!blank)
            words.back() += c;
    }
    if (quoted)
        throw error("a quote is not closed");
    return words;
}

// Hardware addresses are the same in small letters.
std::string one_spelling(std::string name)
{
    if (name.find(':') != name.npos)
        std::transform(name.begin(), name.end(), name.begin(), [](unsigned char c) { return char(tolower(c)); });
    return name;
}

void add(std::vector<object> &objects, const std::vector<std::string> &words, int line)
{
    if (words.size() < 2)
        throw error("a name is missing behind " + words[0]);
    const bool removes = words[0] == "remove";
    if (removes && words.size() != 3)
        throw error("remove takes a kind and a name");
    const std::string &kind = words[removes], name = one_spelling(words[removes + 1U]);
    auto found =
        std::find_if(objects.begin(), objects.end(), [&](const object &o) { return o.kind == kind && o.name == name; });
    if (removes) {
        if (found != objects.end())
            objects.erase(found);
        return;
    }
    if (found == objects.end())
        found = objects.insert(objects.end(), {kind, name, {}, line});
    found->line = line;
    for (size_t i = 2; i < words.size(); i++) {
        const size_t equals = std::min(words[i].find('='), words[i].size());
        if (equals == words[i].size())
            found->values[""] = words[i];
        else
            found->values[words[i].substr(0, equals)] = words[i].substr(equals + 1);
    }
}

} // namespace

std::string quoted(std::string_view value)
{
    constexpr char digits[] = "0123456789abcdef";
    std::string text = "\"";
    for (const char c : value) {
        const auto byte = uint8_t(c);
        if (byte < ' ' || byte > '~')
            text += {'\\', 'x', digits[byte >> 4], digits[byte & 0xf]};
        else
            text += (c == '"' || c == '\\' ? std::string{"\\"} : std::string{}) + c;
    }
    return text + '"';
}

std::vector<object> read_objects(std::string_view text)
{
    std::vector<object> objects;
    std::istringstream lines{std::string(text)};
    int number = 0;
    for (std::string line; std::getline(lines, line);) {
        number++;
        try {
            if (const auto words = words_of(line); !words.empty())
                add(objects, words, number);
        } catch (const error &wrong) {
            throw error("line " + std::to_string(number) + ": " + wrong.what());
        }
    }
    return objects;
}

} // namespace sim::driver
