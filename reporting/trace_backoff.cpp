// SPDX-License-Identifier: MIT
#include "reporting/trace_backoff.h"

#include <cstdint>
#include <ctime>

namespace {

constexpr int64_t longest_ms = 24LL * 60 * 60 * 1000;
constexpr int64_t shortest_ms = 1000;
constexpr int tolerated_failures = 4;

struct {
    int64_t last_attempt_ms;
    int failures; // in a row
    int64_t wait_ms;
    bool has_failed; // ever
} sending;

// A clock that is set back must not keep traces from going out.
int64_t monotonic_ms()
{
    timespec now;
    clock_gettime(CLOCK_MONOTONIC, &now);
    return int64_t{now.tv_sec} * 1000 + now.tv_nsec / 1000000;
}

} // namespace

bool has_given_up()
{
    return sending.wait_ms > longest_ms;
}

bool holds_back()
{
    return monotonic_ms() < sending.last_attempt_ms + sending.wait_ms;
}

bool note_attempt(bool reached)
{
    sending.last_attempt_ms = monotonic_ms();
    if (reached) {
        sending.failures = 0;
        sending.wait_ms = 0;
        return false;
    }
    if (++sending.failures > tolerated_failures)
        sending.wait_ms = sending.wait_ms == 0 ? shortest_ms : sending.wait_ms * 2;
    const bool first = !sending.has_failed;
    sending.has_failed = true;
    return first;
}
