// SPDX-License-Identifier: MIT
#include "core/ascii.h"
#include "core/hex.h"
#include "core/owner.h"

#include <cstring>
#include <libvexa.h>

namespace {

constexpr bool is_unreserved(char c)
{
    return is_digit(c) || is_letter(c) || c == '-' || c == '.' || c == '_' || c == '~';
}

} // namespace

extern "C" char *url_encode(const char *text)
{
    const size_t length = strlen(text);
    if (length > (SIZE_MAX - 1) / 3)
        return nullptr;
    auto *encoded = static_cast<char *>(malloc(3 * length + 1));
    if (!encoded)
        return nullptr;
    char *out = encoded;
    for (; *text; text++) {
        if (is_unreserved(*text) || *text == ' ') {
            *out++ = *text == ' ' ? '+' : *text;
            continue;
        }
        *out++ = '%';
        put_hex(out, static_cast<unsigned char>(*text), lower_hex_digits);
        out += 2;
    }
    *out = '\0';
    return encoded;
}
