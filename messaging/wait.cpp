// SPDX-License-Identifier: MIT
#include "messaging/wait.h"

#include <algorithm>
#include <ctime>

namespace {

constexpr int64_t us_per_second = 1'000'000;
constexpr int64_t refused = -1;

int64_t now_us()
{
    timespec now;
    clock_gettime(CLOCK_MONOTONIC, &now);
    return int64_t{now.tv_sec} * us_per_second + now.tv_nsec / 1000;
}

} // namespace

deadline::deadline(int seconds) : end_us_{seconds < 0 ? refused : now_us() + seconds * us_per_second}
{}

bool deadline::passed() const
{
    return now_us() >= end_us_;
}

timeval deadline::left() const
{
    if (end_us_ == refused)
        return {-1, 0};
    const int64_t us = std::max(end_us_ - now_us(), int64_t{0});
    return {time_t(us / us_per_second), suseconds_t(us % us_per_second)};
}

int wait_until(int fd, ready_for what, const deadline &end)
{
    fd_set set;
    FD_ZERO(&set);
    FD_SET(fd, &set);
    timeval left = end.left();
    const bool reading = what == ready_for::reading;
    return select(fd + 1, reading ? &set : nullptr, reading ? nullptr : &set, nullptr, &left);
}
