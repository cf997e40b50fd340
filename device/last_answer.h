// SPDX-License-Identifier: MIT
#pragma once

#include "core/owner.h"

#include <ctime>

// What a power device answered last, and when.
class last_answer {
public:
    const json_t *younger_than(unsigned seconds) const { return value_ && age() < seconds ? value_.get() : nullptr; }
    json_t *get() const { return value_.get(); }
    void keep(json_ref value)
    {
        value_ = std::move(value);
        at_ = now();
    }

private:
    static time_t now()
    {
        timespec time;
        clock_gettime(CLOCK_MONOTONIC, &time);
        return time.tv_sec;
    }
    unsigned long age() const { return static_cast<unsigned long>(now() - at_); }

    json_ref value_;
    time_t at_ = 0;
};
