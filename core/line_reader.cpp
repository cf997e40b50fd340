// SPDX-License-Identifier: MIT
#include "core/line_reader.h"

#include <cstdint>
#include <cstring>

namespace {

constexpr size_t piece_size = size_t{64} * 1024;

} // namespace

bool line_reader::next(std::string_view &line)
{
    for (;;) {
        const char *start = buffer_.get() + begin_;
        const size_t left = end_ - begin_;
        const void *feed = left > 0 ? memchr(start, '\n', left) : nullptr;
        if (feed || (ended_ && left > 0)) {
            const size_t size = feed ? size_t(static_cast<const char *>(feed) - start) + 1 : left;
            line = {start, size};
            begin_ += size;
            return true;
        }
        if (ended_ || !read_on())
            return false;
    }
}

// Room is at least doubled whenever a line begun takes half of it, so that reading a long line stays linear.
bool line_reader::read_on()
{
    const size_t kept = end_ - begin_;
    if (kept >= capacity_ / 2) {
        const size_t wanted = capacity_ > 0 ? capacity_ * 2 : piece_size;
        unique_text larger{wanted > capacity_ ? static_cast<char *>(malloc(wanted)) : nullptr};
        if (!larger)
            return false;
        if (kept > 0)
            memcpy(larger.get(), buffer_.get() + begin_, kept);
        buffer_ = std::move(larger);
        capacity_ = wanted;
    } else {
        memmove(buffer_.get(), buffer_.get() + begin_, kept);
    }
    begin_ = 0;
    const size_t got = fread(buffer_.get() + kept, 1, capacity_ - kept, stream_);
    end_ = kept + got;
    ended_ = end_ < capacity_;
    return !ended_ || feof(stream_) != 0;
}
