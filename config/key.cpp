// SPDX-License-Identifier: MIT
#include "config/key.h"

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <libvexa.h>

namespace {

template <typename T>
constexpr int sign(T a, T b)
{
    return (a > b) - (a < b);
}

// Compares two numbers, of any size, and passes over them. Of two equal ones the longer is greater: one character on,
// it still has a zero to drop when the other has ended or lost its first digit.
int compare_numbers(const char *&a, const char *&b)
{
    const char *a_start = a;
    const char *b_start = b;
    while (*a == '0')
        a++;
    while (*b == '0')
        b++;
    const int zeros = sign(a - a_start, b - b_start);
    int order = 0;
    for (; is_digit(*a) && is_digit(*b); a++, b++)
        if (order == 0)
            order = sign(*a, *b);
    if (is_digit(*a) || is_digit(*b))
        return is_digit(*a) ? 1 : -1;
    return order != 0 ? order : zeros;
}

// The end comes before every character, and a number after them.
int compare_unlike(char a, char b)
{
    const auto rank = [](char c) { return is_digit(c) ? 256 : lower_case(c); };
    return sign(rank(a), rank(b));
}

} // namespace

extern "C" int cfg_natural_compare(const char *a, const char *b)
{
    if (a == b)
        return 0;
    if (!a || !b)
        return a ? 1 : -1;
    for (;;) {
        if (is_digit(*a) && is_digit(*b)) {
            if (const int order = compare_numbers(a, b))
                return order;
        } else if (const int order = compare_unlike(*a, *b)) {
            return order;
        } else if (*a == '\0') {
            return 0;
        } else {
            a++;
            b++;
        }
    }
}

extern "C" int get_cfg_key_idx(const char *key, int n)
{
    int found = 0;
    while ((key = strchr(key, '.'))) {
        key++;
        errno = 0;
        const long number = strtol(key, nullptr, 0);
        if (errno == 0 && number != 0 && ++found == n)
            return int(number);
    }
    return -1;
}

extern "C" const char *get_key_element(const char *key, unsigned n)
{
    for (; n > 0; n--) {
        key = strchr(key, '.');
        if (!key)
            return nullptr;
        key++;
    }
    return key;
}
