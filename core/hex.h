// SPDX-License-Identifier: MIT
#pragma once

inline constexpr char lower_hex_digits[] = "0123456789abcdef";
inline constexpr char upper_hex_digits[] = "0123456789ABCDEF";

// Writes two digits, without a zero behind them.
constexpr void put_hex(char *out, unsigned char byte, const char (&digits)[17])
{
    out[0] = digits[byte >> 4];
    out[1] = digits[byte & 15];
}

// -1 when it is no hexadecimal digit.
constexpr int hex_value(char c)
{
    if (c >= '0' && c <= '9')
        return c - '0';
    const char lower = char(c | 0x20);
    return lower >= 'a' && lower <= 'f' ? lower - 'a' + 10 : -1;
}
