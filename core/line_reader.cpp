// SPDX-License-Identifier: MIT
#include "core/line_reader.h"

namespace {

constexpr size_t piece_size = size_t{32} * 1024;

} // namespace

// Adds to the line begun what the stream gives next; false when there is no more. The room is doubled once such a line
// takes half of it, so that a long one is moved and searched a few times, not once for each piece.
bool line_reader::read_on()
{
    if (ended_) {
        if (!feof(stream_))
            end_ = begin_;
        return false;
    }
    const size_t begun = size_t(end_ - begin_);
    if (begun >= capacity_ / 2) {
        const size_t wanted = capacity_ > 0 ? capacity_ * 2 : piece_size;
        unique_text larger{wanted > capacity_ ? static_cast<char *>(malloc(wanted + slack)) : nullptr};
        if (!larger) {
            end_ = begin_;
            return false;
        }
        memcpy(larger.get(), begin_, begun);
        buffer_ = std::move(larger);
        capacity_ = wanted;
    } else {
        memmove(buffer_.get(), begin_, begun);
    }
    char *fresh = buffer_.get() + begun;
    const size_t room = capacity_ - begun;
    const size_t got = fread(fresh, 1, room, stream_);
    met_zero_ = met_zero_ || memchr(fresh, '\0', got);
    begin_ = buffer_.get();
    end_ = fresh + got;
    ended_ = got < room;
    return true;
}
