// SPDX-License-Identifier: MIT
#pragma once

#include "core/owner.h"

#include <cstdint>
#include <cstring>

// Records of one size, taken from a file that is read in large pieces. One that is cut at the end is dropped.
template <size_t size>
class record_reader {
public:
    explicit record_reader(unique_fd fd) : fd_{std::move(fd)} {}

    // Valid until the next call; nullptr at the end.
    const uint8_t *next()
    {
        if (taken_ == whole_ && !read_on())
            return nullptr;
        const uint8_t *record = piece_ + taken_;
        taken_ += size;
        return record;
    }

private:
    // The kernel gives a page at a time, whose end may stand within a record.
    bool read_on()
    {
        size_t kept = filled_ - whole_;
        memmove(piece_, piece_ + whole_, kept);
        while (kept < size) {
            const ssize_t got = read(fd_.get(), piece_ + kept, sizeof piece_ - kept);
            if (got < 0 && errno == EINTR)
                continue;
            if (got <= 0)
                return false;
            kept += size_t(got);
        }
        filled_ = kept;
        whole_ = kept - kept % size;
        taken_ = 0;
        return true;
    }

    unique_fd fd_;
    size_t taken_ = 0;
    size_t whole_ = 0; // end of the last whole record
    size_t filled_ = 0;
    uint8_t piece_[size * 512];
};
