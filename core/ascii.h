// SPDX-License-Identifier: MIT
#pragma once

#include <string_view>

// Character classes of ASCII, whatever the locale of the host; bytes above 0x7f belong to none.

constexpr bool is_digit(char c)
{
    return c >= '0' && c <= '9';
}

constexpr bool is_blank(char c)
{
    return c == ' ' || c == '\t';
}

constexpr bool is_space(char c)
{
    return c == ' ' || (c >= '\t' && c <= '\r');
}

constexpr unsigned char lower_case(char c)
{
    return static_cast<unsigned char>(c >= 'A' && c <= 'Z' ? c | 0x20 : c);
}

constexpr bool is_letter(char c)
{
    const unsigned char lower = lower_case(c);
    return lower >= 'a' && lower <= 'z';
}

constexpr std::string_view trim_blanks(std::string_view text)
{
    while (!text.empty() && is_blank(text.front()))
        text.remove_prefix(1);
    while (!text.empty() && is_blank(text.back()))
        text.remove_suffix(1);
    return text;
}

constexpr bool equal_without_case(std::string_view a, std::string_view b)
{
    if (a.size() != b.size())
        return false;
    for (size_t i = 0; i < a.size(); i++)
        if (lower_case(a[i]) != lower_case(b[i]))
            return false;
    return true;
}
