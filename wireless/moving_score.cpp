// SPDX-License-Identifier: MIT
#include "worst.h"

#include <array>

namespace {

using per_factor = std::array<int32_t, VEXA_FACTORS>;

// Of these a 0 says that nothing was heard yet: now it is a 0 outright, in the history it counts no more.
constexpr factor timeouts[] = {factor_ip_timeout, factor_arp_timeout, factor_dns_timeout};

// the lowest value of the history that counts
constexpr per_factor least = [] {
    per_factor values{};
    for (const factor which : timeouts)
        values[which] = 1;
    return values;
}();

// For the mean of at most five subscores: sum times reciprocal is the quotient and a fraction that cannot carry.
constexpr uint32_t reciprocals[] = {0, 65536, 32768, 21846, 16384, 13108};

// All factors of a sample at once, which becomes vector instructions.
per_factor moving_subscores(const vexa_score &score)
{
    std::array<uint32_t, VEXA_FACTORS> sums, counts;
    for (size_t i = 0; i < VEXA_FACTORS; i++) {
        const int32_t now = score.subscores_now[i];
        sums[i] = now >= 0 ? uint32_t(now) : 0;
        counts[i] = now >= 0;
    }
    for (const auto &sample : score.history)
        for (size_t i = 0; i < VEXA_FACTORS; i++) {
            sums[i] += sample[i] >= least[i] ? uint32_t(sample[i]) : 0;
            counts[i] += sample[i] >= least[i];
        }
    per_factor values;
    for (size_t i = 0; i < VEXA_FACTORS; i++)
        values[i] = counts[i] > 0 ? int32_t(sums[i] * reciprocals[counts[i]] >> 16) : -1;
    for (const factor which : timeouts)
        if (score.subscores_now[which] == 0)
            values[which] = 0;
    return values;
}

} // namespace

extern "C" void calc_sta_satisfaction_mov(vexa_score *score)
{
    const per_factor values = moving_subscores(*score);
    worst found;
    for (uint8_t i = 0; i < VEXA_FACTORS; i++)
        found.take(factor(i), values[i]);
    score->score_real = int32_t(found.score);
    score->reason = found.reason;
    score->anomalies = found.anomalies;
}
