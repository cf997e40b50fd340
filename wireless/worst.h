// SPDX-License-Identifier: MIT
#pragma once

#include "factor.h"

// What a station's score is made of: the lowest score of a factor, which also is the reason unless it is perfect, where
// of equal ones the first stays; and what is below 80, the anomalies.
struct worst {
    uint32_t score = UINT32_MAX; // no score, -1, is above all others
    uint32_t reason = 0;
    uint32_t anomalies = 0;

    void take(factor which, int32_t value)
    {
        const auto v = uint32_t(value);
        if (v < score) {
            score = v;
            reason = v < 100 ? bit_of(which) : 0;
        }
        anomalies |= v < 80 ? bit_of(which) : 0;
    }
};
