// SPDX-License-Identifier: MIT
#include <array>
#include <climits>
#include <libvexa.h>

namespace {

constexpr char rfc_alphabet[] = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
constexpr char url_alphabet[] = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789-_";
constexpr uint8_t invalid = 64;

// The six bits of a character of either alphabet.
constexpr auto values = [] {
    std::array<uint8_t, 256> table{};
    for (auto &value : table)
        value = invalid;
    for (uint8_t i = 0; i < invalid; i++)
        table[uint8_t(rfc_alphabet[i])] = table[uint8_t(url_alphabet[i])] = i;
    return table;
}();

constexpr uint8_t value_of(char c)
{
    return values[uint8_t(c)];
}

// Writes whole groups and what is left over; returns the end of the text, which is not yet terminated.
char *encode(char *out, const unsigned char *in, size_t len, const char (&alphabet)[65])
{
    for (; len > 2; in += 3, len -= 3) {
        const unsigned group = unsigned(in[0]) << 16 | unsigned(in[1]) << 8 | in[2];
        *out++ = alphabet[group >> 18];
        *out++ = alphabet[group >> 12 & 63];
        *out++ = alphabet[group >> 6 & 63];
        *out++ = alphabet[group & 63];
    }
    if (len > 0) {
        const unsigned group = unsigned(in[0]) << 8 | (len > 1 ? in[1] : 0u);
        *out++ = alphabet[group >> 10];
        *out++ = alphabet[group >> 4 & 63];
        if (len > 1)
            *out++ = alphabet[group << 2 & 63];
    }
    return out;
}

} // namespace

extern "C" unsigned base64_encode_len(unsigned len)
{
    constexpr unsigned most = (UINT_MAX - 1) / 4 * 3;
    return len > most ? 0 : len / 3 * 4 + (len % 3 > 0 ? 4 : 0) + 1;
}

extern "C" unsigned base64_decode_len(const char *text)
{
    size_t n = 0;
    while (value_of(text[n]) != invalid)
        n++;
    return unsigned((n + 3) / 4 * 3 + 1);
}

extern "C" void base64rfc_encode(char *out, const unsigned char *in, unsigned len)
{
    out = encode(out, in, len, rfc_alphabet);
    for (unsigned left = len % 3; left > 0 && left < 3; left++)
        *out++ = '=';
    *out = '\0';
}

extern "C" void base64url_encode(char *out, const unsigned char *in, unsigned len)
{
    *encode(out, in, len, url_alphabet) = '\0';
}

// Nothing behind the first invalid character is looked at.
extern "C" void base64_decode(unsigned char *out, const char *text)
{
    for (;;) {
        uint8_t v[4] = {};
        int n = 0;
        while (n < 4 && (v[n] = value_of(text[n])) != invalid)
            n++;
        const unsigned group = unsigned(v[0]) << 18 | unsigned(v[1]) << 12 | unsigned(v[2]) << 6 | v[3];
        if (n > 1)
            *out++ = uint8_t(group >> 16);
        if (n > 2)
            *out++ = uint8_t(group >> 8);
        if (n < 4)
            break;
        *out++ = uint8_t(group);
        text += 4;
    }
    *out = '\0';
}

extern "C" unsigned base64url_encode_len(unsigned len)
{
    return base64_encode_len(len);
}

extern "C" unsigned base64url_decode_len(const char *text)
{
    return base64_decode_len(text);
}

extern "C" void base64url_decode(unsigned char *out, const char *text)
{
    base64_decode(out, text);
}
