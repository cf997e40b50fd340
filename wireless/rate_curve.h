// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <span>

// A straight line between two rates.
struct rate_segment {
    float score_at_lower, score_at_upper;
    uint32_t lower, upper;
};

// from the fastest down
inline constexpr rate_segment narrow_rate_curve[] = {
    {95, 100, 25000, 30000}, {90, 95, 15000, 25000}, {80, 90, 10000, 15000}, {60, 80, 1000, 10000}};
inline constexpr rate_segment wide_rate_curve[] = {
    {95, 100, 25000, 150000}, {90, 95, 15000, 25000}, {80, 90, 10000, 15000}, {60, 80, 1000, 10000}};

// Above the curve its highest score, below it 0.
int score_on(std::span<const rate_segment> curve, uint32_t rate);
