// SPDX-License-Identifier: MIT
#include "core/utf8.h"

#include "core/owner.h"

#include <cstdint>
#include <cstring>

namespace {

constexpr std::string_view replacement = "\xef\xbf\xbd"; // U+FFFD

// Lead bytes, and the range of the byte behind each: it leaves out overlong forms, surrogates and what is beyond
// U+10FFFF.
constexpr struct {
    uint8_t first, last, size, second_first, second_last;
} forms[] = {
    {0x00, 0x7f, 1, 0, 0},       {0xc2, 0xdf, 2, 0x80, 0xbf}, {0xe0, 0xe0, 3, 0xa0, 0xbf},
    {0xe1, 0xec, 3, 0x80, 0xbf}, {0xed, 0xed, 3, 0x80, 0x9f}, {0xee, 0xef, 3, 0x80, 0xbf},
    {0xf0, 0xf0, 4, 0x90, 0xbf}, {0xf1, 0xf3, 4, 0x80, 0xbf}, {0xf4, 0xf4, 4, 0x80, 0x8f},
};

bool within(char c, uint8_t first, uint8_t last)
{
    const auto byte = static_cast<uint8_t>(c);
    return byte >= first && byte <= last;
}

json_t *with_replacements(std::string_view bytes)
{
    if (bytes.size() > SIZE_MAX / replacement.size())
        return nullptr;
    const unique_text text{static_cast<char *>(malloc(bytes.size() * replacement.size()))};
    if (!text)
        return nullptr;
    char *end = text.get();
    while (!bytes.empty()) {
        const size_t size = utf8_character(bytes);
        const std::string_view character = size > 0 ? std::string_view{bytes.data(), size} : replacement;
        memcpy(end, character.data(), character.size());
        end += character.size();
        bytes.remove_prefix(size > 0 ? size : 1);
    }
    return json_stringn_nocheck(text.get(), size_t(end - text.get()));
}

} // namespace

size_t utf8_character(std::string_view text)
{
    for (const auto &form : forms) {
        if (!within(text[0], form.first, form.last))
            continue;
        if (form.size == 1)
            return 1;
        if (text.size() < form.size || !within(text[1], form.second_first, form.second_last))
            return 0;
        for (size_t i = 2; i < form.size; i++)
            if (!within(text[i], 0x80, 0xbf))
                return 0;
        return form.size;
    }
    return 0;
}

json_t *json_text(std::string_view bytes)
{
    json_t *text = json_stringn(bytes.data(), bytes.size());
    return text || bytes.empty() ? text : with_replacements(bytes);
}
