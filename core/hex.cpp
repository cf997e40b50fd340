// SPDX-License-Identifier: MIT
#include "core/hex.h"

#include "core/ascii.h"

#include <cstdio>
#include <cstring>
#include <libvexa.h>

namespace {

// Reads what scanf calls "%2x": blanks in front do not count, a sign or a "0x" counts as part of the two characters.
bool scan_pair(const char *text, unsigned char &byte)
{
    while (is_space(*text))
        text++;
    const bool is_signed = *text == '+' || *text == '-';
    const char *first = text + is_signed;
    const int high = hex_value(*first);
    if (high < 0)
        return false;
    unsigned value = unsigned(high);
    if (const int low = is_signed ? -1 : hex_value(first[1]); low >= 0)
        value = value << 4 | unsigned(low);
    byte = static_cast<unsigned char>(*text == '-' ? 0 - value : value);
    return true;
}

int to_hex(const unsigned char *in, size_t len, char *out, size_t outsize, const char (&digits)[17])
{
    if (!in || !out || outsize == 0 || len > (outsize - 1) / 2)
        return 0;
    memset(out, 0, outsize);
    for (size_t i = 0; i < len; i++)
        put_hex(out + 2 * i, in[i], digits);
    return int(len);
}

} // namespace

extern "C" int hex2uchar(const char *hex, unsigned char *out, size_t size)
{
    if (!hex || !out || !*hex)
        return 0;
    memset(out, 0, size);
    for (size_t i = 0; i < size && scan_pair(hex, out[i]) && hex[1]; i++)
        hex += 2;
    return int(size);
}

extern "C" int uchar2hex(const unsigned char *in, size_t len, char *out, size_t outsize)
{
    return to_hex(in, len, out, outsize, upper_hex_digits);
}

extern "C" int uchar2lowerhex(const unsigned char *in, size_t len, char *out, size_t outsize)
{
    return to_hex(in, len, out, outsize, lower_hex_digits);
}

// The last byte is never written: callers count a terminator as part of what they pass.
extern "C" int bin2hex(const unsigned char *in, unsigned len, char *out, unsigned outsize)
{
    if (len == 0 || outsize == 0)
        return 0;
    unsigned at = 0;
    for (unsigned i = 0; i < len - 1 && outsize - at >= 3; i++, at += 2)
        put_hex(out + at, in[i], lower_hex_digits);
    out[at] = '\0';
    return int(at);
}

extern "C" int strtomac(const char *text, unsigned char mac[6])
{
    unsigned b[6];
    if (sscanf(text, "%02x:%02x:%02x:%02x:%02x:%02x", &b[0], &b[1], &b[2], &b[3], &b[4], &b[5]) != 6)
        return -1;
    for (int i = 0; i < 6; i++)
        mac[i] = static_cast<unsigned char>(b[i]);
    return 0;
}
