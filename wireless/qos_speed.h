// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>

// Mbit/s in kbit/s, at most what a number holds.
constexpr int64_t kbit_of(int64_t mbit)
{
    int64_t kbit = 0;
    return __builtin_mul_overflow(mbit, int64_t{1000}, &kbit) ? (mbit < 0 ? INT64_MIN : INT64_MAX) : kbit;
}
