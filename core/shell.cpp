// SPDX-License-Identifier: MIT
#include "core/shell.h"

#include "core/ascii.h"

#include <algorithm>
#include <cstdint>
#include <cstring>

namespace {

constexpr std::string_view plain_marks = "._+@,:=-";
constexpr std::string_view active_in_quotes = "\"$`\\";
constexpr std::string_view quote_in_quotes = "'\\''";

bool is_plain(char c)
{
    return is_letter(c) || is_digit(c) || plain_marks.find(c) != plain_marks.npos;
}

// Room for a text each of whose characters may become so many, for two quotes and the zero.
unique_text room_for(std::string_view text, size_t longest)
{
    const bool fits = text.size() < SIZE_MAX / longest - 3;
    return unique_text{fits ? static_cast<char *>(malloc(text.size() * longest + 3)) : nullptr};
}

char *append(char *end, std::string_view piece)
{
    memcpy(end, piece.data(), piece.size());
    return end + piece.size();
}

} // namespace

unique_text shell_word(std::string_view text)
{
    unique_text word = room_for(text, quote_in_quotes.size());
    if (!word)
        return word;
    char *end = word.get();
    if (!text.empty() && std::all_of(text.begin(), text.end(), is_plain)) {
        *append(end, text) = '\0';
        return word;
    }
    *end++ = '\'';
    for (const char &c : text)
        end = append(end, c == '\'' ? quote_in_quotes : std::string_view{&c, 1});
    memcpy(end, "'", 2);
    return word;
}

unique_text shell_double_quoted(std::string_view text)
{
    unique_text quoted = room_for(text, 2);
    if (!quoted)
        return quoted;
    char *end = quoted.get();
    for (const char c : text) {
        if (active_in_quotes.find(c) != active_in_quotes.npos)
            *end++ = '\\';
        *end++ = c == '\n' ? '.' : c;
    }
    *end = '\0';
    return quoted;
}
