// SPDX-License-Identifier: MIT
#include "rate_curve.h"

int score_on(std::span<const rate_segment> curve, uint32_t rate)
{
    if (rate >= curve.front().upper)
        return int(curve.front().score_at_upper);
    for (const rate_segment &s : curve)
        if (rate >= s.lower && rate <= s.upper) {
            const float t = float(rate - s.lower) / float(s.upper - s.lower);
            return int(s.score_at_lower * (1 - t) + s.score_at_upper * t);
        }
    return 0;
}
