// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <string_view>
#include <vector>

// Text from outside is bytes: it may hold control characters and need not be UTF-8.

// The first character of a text; a byte that begins none stands alone and is not valid.
struct character {
    std::string_view bytes;
    char32_t code;
    bool valid;
};
character first_character(std::string_view text);

// whether a terminal would show the character as itself, and nothing else
bool is_shown(const character &c);

// fit for a terminal: a character that is not shown becomes "\n", "\x1b" or "\u202e", a byte that is none "\xff"
std::string visible(std::string_view text);

// with U+FFFD in the place of each byte that is no UTF-8
std::string valid_utf8(std::string_view text);

// of ASCII letters
std::string lower_case(std::string_view text);
std::string upper_case(std::string_view text);

// columns that a visible text takes on a terminal
size_t width(std::string_view text);

// a visible text in lines of at most `columns`, broken at a blank where there is one
std::vector<std::string> wrap(std::string_view text, size_t columns);

__attribute__((format(printf, 1, 2))) std::string format(const char *fmt, ...);
