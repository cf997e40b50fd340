// SPDX-License-Identifier: MIT
#pragma once

#include "core/owner.h"

#include <cstring>
#include <string_view>

// The lines of a stream, of any length, from where its reading stands. It reads in large pieces, so take all lines or
// leave the stream alone afterwards.
class line_reader {
public:
    static constexpr size_t slack = 32;

    explicit line_reader(FILE *stream) noexcept : stream_{stream} {}

    // The next line with its line feed, valid until the next call; the last line may lack it. `slack` bytes of no
    // meaning may be read behind it. False at the end, when the stream cannot be read (a line begun is dropped, for
    // its rest is unknown) or memory runs out.
    bool next(std::string_view &line)
    {
        do {
            if (const void *feed = memchr(begin_, '\n', size_t(end_ - begin_))) {
                line = take(static_cast<const char *>(feed) + 1);
                return true;
            }
        } while (read_on());
        line = take(end_);
        return !line.empty();
    }

    // Whether a zero byte was read so far; who is told no need not look for one in each line.
    bool met_zero() const { return met_zero_; }

private:
    std::string_view take(const char *end)
    {
        const char *start = std::exchange(begin_, end);
        return {start, size_t(end - start)};
    }
    bool read_on();

    FILE *stream_;
    unique_text buffer_;
    size_t capacity_ = 0;
    const char *begin_ = ""; // what is read and not yet taken
    const char *end_ = begin_;
    bool ended_ = false;
    bool met_zero_ = false;
};
