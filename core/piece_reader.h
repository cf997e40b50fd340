// SPDX-License-Identifier: MIT
#pragma once

#include "core/owner.h"

#include <algorithm>
#include <cstring>
#include <string_view>

// A file in the pieces that fgets() with a buffer of `size` bytes would give: a line with its line feed, or as much of
// it as fits. A zero byte ends a piece before its end. The file is read in large pieces, without a stream.
class piece_reader {
public:
    piece_reader(unique_fd fd, size_t size) noexcept : fd_{std::move(fd)}, longest_{size - 1} {}

    // False at the end, and when the file cannot be read: a line begun is dropped then. Valid until the next call.
    bool next(std::string_view &piece)
    {
        do {
            const size_t window = std::min(size_t(end_ - begin_), longest_);
            if (const void *feed = memchr(begin_, '\n', window)) {
                piece = take(static_cast<const char *>(feed) + 1);
                return true;
            }
            if (window == longest_) {
                piece = take(begin_ + longest_);
                return true;
            }
        } while (read_on());
        const bool any = begin_ != end_;
        piece = take(end_);
        return any;
    }

private:
    std::string_view take(const char *end)
    {
        const char *start = std::exchange(begin_, end);
        const auto size = size_t(end - start);
        return {start, met_zero_ ? strnlen(start, size) : size};
    }
    bool read_on();

    unique_fd fd_;
    size_t longest_;
    bool met_zero_ = false;
    const char *begin_ = block_; // what is read and not yet taken
    const char *end_ = block_;
    char block_[16384];
};
