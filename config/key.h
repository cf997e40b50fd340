// SPDX-License-Identifier: MIT
#pragma once

#include "core/ascii.h"

// A first look: whether two characters are the same but for the bit that tells upper from lower case.
inline bool may_be_equal(char a, char b)
{
    constexpr int case_bit = 0x20;
    return (a | case_bit) == (b | case_bit);
}

// Whether cfg_natural_compare() calls two keys equal: it does when they differ in case only, and never else, since
// equal numbers that start at the same place of both keys and end at different ones differ further on. As far as keys
// agree, they mostly agree in case too.
inline bool equal_keys(const char *a, const char *b)
{
    while (*a == *b && *b != '\0')
        a++, b++;
    if (!may_be_equal(*a, *b))
        return false;
    for (; lower_case(*a) == lower_case(*b); a++, b++)
        if (*a == '\0')
            return true;
    return false;
}
