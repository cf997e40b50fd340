// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>

// In single precision, which the bounds of the scores rely on. Nothing of nothing is 0 %.
inline float percent_of(uint64_t count, uint64_t all)
{
    return all == 0 ? 0 : float(count) / float(all) * 100;
}
