// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <sys/select.h>

// The end of a wait that signals may interrupt: going on does not start the time anew.
class deadline {
public:
    explicit deadline(int seconds);

    bool passed() const;
    timeval left() const; // negative, which select() refuses, when the seconds were

private:
    int64_t end_us_;
};

enum class ready_for { reading, writing };

// A set of select() has no place for other descriptors and would be written beyond its end.
constexpr bool can_wait_on(int fd)
{
    return fd >= 0 && fd < FD_SETSIZE;
}

// One select(): its result, -1 with EINTR on a signal.
int wait_until(int fd, ready_for what, const deadline &end);
