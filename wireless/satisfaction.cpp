// SPDX-License-Identifier: MIT
#include "worst.h"

#include <algorithm>

namespace {

// One of the two scores while it is made.
class recording {
public:
    explicit recording(vexa_score &to) : to_{to} { std::ranges::fill(to.subscores_now, -1); }

    void record(factor which, int value)
    {
        value = std::clamp(value, -1, 100);
        to_.subscores_now[which] = value;
        found_.take(which, value);
    }

    // Reason and anomalies are added to what is there: a fresh record has none.
    void finish()
    {
        to_.score_now = int32_t(found_.score);
        if (found_.reason != 0)
            to_.reason_now = found_.reason;
        to_.anomalies_now |= found_.anomalies;
    }

private:
    vexa_score &to_;
    worst found_;
};

} // namespace

extern "C" int calc_sta_satisfaction(stainfo *sta)
{
    recording standard{sta->satisfaction}, experimental{sta->satisfaction_exp};
    for (const scored_factor &f : scored_factors()) {
        const int value = f.standard(*sta);
        standard.record(f.which, value);
        if (f.experimental)
            experimental.record(f.which, f.experimental == f.standard ? value : f.experimental(*sta));
    }
    standard.finish();
    experimental.finish();
    return 0;
}
