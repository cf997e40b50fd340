// SPDX-License-Identifier: MIT
#include "text.h"

#include <algorithm>
#include <cstdarg>
#include <cstdio>
#include <cwchar>
#include <iterator>

namespace {

constexpr bool continues(char byte)
{
    return (static_cast<unsigned char>(byte) & 0xc0) == 0x80;
}

// length and least code of the sequence that a byte begins
struct lead {
    unsigned char mask, mark, length;
    char32_t least;
};
constexpr lead leads[] = {{0x80, 0x00, 1, 0}, {0xe0, 0xc0, 2, 0x80}, {0xf0, 0xe0, 3, 0x800}, {0xf8, 0xf0, 4, 0x10000}};

constexpr bool is_code(char32_t code, char32_t least)
{
    return code >= least && code <= 0x10ffff && (code < 0xd800 || code > 0xdfff);
}

// Characters without a shape of their own: they would change the order or the look of what stands around them.
constexpr struct {
    char32_t first, last;
} shapeless[] = {{0x00, 0x1f},     {0x7f, 0x9f},     {0xad, 0xad},     {0x61c, 0x61c},   {0x200b, 0x200f},
                 {0x2028, 0x202e}, {0x2060, 0x206f}, {0xfeff, 0xfeff}, {0xfff9, 0xfffb}, {0xe0000, 0xe0fff}};

std::string escape(const character &c)
{
    switch (c.valid ? c.code : 0) {
    case '\n':
        return "\\n";
    case '\r':
        return "\\r";
    case '\t':
        return "\\t";
    default:
        break;
    }
    if (!c.valid || c.code < 0x80)
        return format("\\x%02x", static_cast<unsigned>(c.code));
    return format(c.code > 0xffff ? "\\U%08x" : "\\u%04x", static_cast<unsigned>(c.code));
}

size_t width_of(const character &c)
{
    const int columns = c.code < 0x80 ? 1 : wcwidth(static_cast<wchar_t>(c.code));
    return columns < 0 ? 1 : static_cast<size_t>(columns);
}

} // namespace

character first_character(std::string_view text)
{
    const auto byte = static_cast<unsigned char>(text.front());
    const auto found =
        std::find_if(std::begin(leads), std::end(leads), [&](const lead &l) { return (byte & l.mask) == l.mark; });
    const character none{text.substr(0, 1), byte, false};
    if (found == std::end(leads) || found->length > text.size())
        return none;
    char32_t code = byte & static_cast<unsigned char>(~found->mask);
    for (size_t i = 1; i < found->length; i++) {
        if (!continues(text[i]))
            return none;
        code = code << 6 | (static_cast<unsigned char>(text[i]) & 0x3f);
    }
    return is_code(code, found->least) ? character{text.substr(0, found->length), code, true} : none;
}

bool is_shown(const character &c)
{
    return c.valid && std::none_of(std::begin(shapeless), std::end(shapeless),
                                   [&](const auto &range) { return c.code >= range.first && c.code <= range.last; });
}

std::string visible(std::string_view text)
{
    std::string out;
    out.reserve(text.size());
    while (!text.empty()) {
        const character c = first_character(text);
        out += is_shown(c) ? std::string{c.bytes} : escape(c);
        text.remove_prefix(c.bytes.size());
    }
    return out;
}

std::string valid_utf8(std::string_view text)
{
    std::string out;
    out.reserve(text.size());
    while (!text.empty()) {
        const character c = first_character(text);
        out += c.valid ? c.bytes : std::string_view{"\xef\xbf\xbd"};
        text.remove_prefix(c.bytes.size());
    }
    return out;
}

std::string lower_case(std::string_view text)
{
    std::string out{text};
    for (char &c : out)
        c = c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
    return out;
}

std::string upper_case(std::string_view text)
{
    std::string out{text};
    for (char &c : out)
        c = c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c;
    return out;
}

size_t width(std::string_view text)
{
    size_t columns = 0;
    while (!text.empty()) {
        const character c = first_character(text);
        columns += width_of(c);
        text.remove_prefix(c.bytes.size());
    }
    return columns;
}

std::vector<std::string> wrap(std::string_view text, size_t columns)
{
    std::vector<std::string> lines;
    size_t used = 0, end = 0, blank = 0; // of the line that `text` begins with
    while (end < text.size()) {
        const character c = first_character(text.substr(end));
        if (used + width_of(c) > columns && end > 0) {
            const bool at_blank = blank > 0 || c.code == ' ';
            const size_t cut = c.code == ' ' ? end : blank > 0 ? blank : end;
            lines.emplace_back(text.substr(0, cut));
            text.remove_prefix(cut + (at_blank ? 1 : 0));
            used = end = blank = 0;
            continue;
        }
        if (c.code == ' ')
            blank = end;
        used += width_of(c);
        end += c.bytes.size();
    }
    lines.emplace_back(text);
    return lines;
}

std::string format(const char *fmt, ...)
{
    char *text = nullptr;
    va_list args;
    va_start(args, fmt);
    const int length = vasprintf(&text, fmt, args);
    va_end(args);
    std::string out;
    if (length >= 0)
        out.assign(text, static_cast<size_t>(length));
    free(text);
    return out;
}
