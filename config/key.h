// SPDX-License-Identifier: MIT
#pragma once

#include "core/ascii.h"

// Whether cfg_natural_compare() calls two keys equal: it does when they differ in case only, and never else, since
// equal numbers that start at the same place of both keys and end at different ones differ further on.
inline bool equal_keys(const char *a, const char *b)
{
    for (; *a == *b || lower_case(*a) == lower_case(*b); a++, b++)
        if (*a == '\0')
            return true;
    return false;
}
