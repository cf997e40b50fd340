// SPDX-License-Identifier: MIT
#pragma once

#include <type_traits>

// Numbers that others wrote may be of any size: sums wrap around.
template <typename T>
constexpr T wrapping_add(T a, T b)
{
    using bits = std::make_unsigned_t<T>;
    return T(bits(a) + bits(b));
}

// The number at the start of a text, by a function of strtol's kind; what follows it does not matter.
template <typename T, typename Convert>
T number_or(T def, const char *text, Convert convert)
{
    char *end = nullptr;
    const T value = convert(text, &end);
    return end == text ? def : value;
}
