// SPDX-License-Identifier: MIT
#pragma once

#include "core/owner.h"

#include <string_view>

// The lines of a stream, of any length, from where its reading stands. It reads in large pieces: take all lines, or
// leave the stream alone afterwards.
class line_reader {
public:
    explicit line_reader(FILE *stream) noexcept : stream_{stream} {}

    // The next line with its line feed, valid until the next call; the last line may lack it. False at the end, when
    // the stream cannot be read (a line begun is dropped, for its rest is unknown) or memory runs out.
    bool next(std::string_view &line);

private:
    bool read_on();

    FILE *stream_;
    unique_text buffer_;
    size_t capacity_ = 0;
    size_t begin_ = 0; // what is read and not yet taken
    size_t end_ = 0;
    bool ended_ = false;
};
