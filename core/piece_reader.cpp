// SPDX-License-Identifier: MIT
#include "core/piece_reader.h"

bool piece_reader::read_on()
{
    const auto begun = size_t(end_ - begin_); // less than the longest piece, so there is room
    memmove(block_, begin_, begun);
    const ssize_t got = read(fd_.get(), block_ + begun, sizeof block_ - begun);
    begin_ = block_;
    end_ = block_ + (got < 0 ? 0 : begun + size_t(got));
    met_zero_ = met_zero_ || memchr(block_, '\0', size_t(end_ - block_));
    return got > 0;
}
