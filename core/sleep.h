// SPDX-License-Identifier: MIT
#pragma once

#include <cerrno>
#include <ctime>

// A signal does not cut it short.
inline void sleep_a_second()
{
    timespec left{1, 0};
    while (nanosleep(&left, &left) != 0 && errno == EINTR) {
    }
}
