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

size_t digits(const char *text)
{
    size_t n = 0;
    while (is_digit(text[n]))
        n++;
    return n;
}

// Compares two runs of digits by their numbers, of any size. One character on, the longer of two equal numbers still
// has a zero to drop when the other has lost its first digit or has ended: it is the greater one.
int compare_numbers(const char *a, size_t a_size, const char *b, size_t b_size)
{
    const char *a_first = a;
    const char *b_first = b;
    while (a_first < a + a_size && *a_first == '0')
        a_first++;
    while (b_first < b + b_size && *b_first == '0')
        b_first++;
    const size_t a_digits = size_t(a + a_size - a_first);
    const size_t b_digits = size_t(b + b_size - b_first);
    if (a_digits != b_digits)
        return sign(a_digits, b_digits);
    if (const int order = memcmp(a_first, b_first, a_digits))
        return sign(order, 0);
    return sign(a_size, b_size);
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
            const size_t a_size = digits(a);
            const size_t b_size = digits(b);
            if (const int order = compare_numbers(a, a_size, b, b_size))
                return order;
            a += a_size;
            b += b_size;
        } else if (*a == '\0' || *b == '\0' || is_digit(*a) || is_digit(*b)) {
            // the end comes before everything, a number after every other character
            const auto rank = [](char c) { return c == '\0' ? 0 : is_digit(c) ? 2 : 1; };
            return sign(rank(*a), rank(*b));
        } else if (const int order = sign(lower_case(*a), lower_case(*b))) {
            return order;
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
