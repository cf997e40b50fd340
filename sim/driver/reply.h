// SPDX-License-Identifier: MIT
#pragma once

#include "sim/driver/description.h"

#include <algorithm>
#include <cerrno>
#include <cstring>

namespace sim::driver {

// The content of an answer, in memory that is there before the request: programs are tested with none to be had.
class reply {
public:
    // Room for so many bytes more, or nullptr.
    uint8_t *add(size_t count)
    {
        if (count > sizeof content_ - size_)
            return nullptr;
        size_ += count;
        return content_ + size_ - count;
    }
    template <typename Bytes>
    int append(const Bytes &more)
    {
        uint8_t *at = add(std::size(more));
        if (!at)
            return -E2BIG;
        std::copy(std::begin(more), std::end(more), at);
        return 0;
    }
    int append(const record &r, double seconds)
    {
        uint8_t *at = add(r.size());
        if (!at)
            return -E2BIG;
        r.write(at, seconds);
        return 0;
    }
    int append_word(uint64_t value)
    {
        const uint8_t word[] = {uint8_t(value), uint8_t(value >> 8), uint8_t(value >> 16), uint8_t(value >> 24)};
        return append(word);
    }

    void clear() { size_ = 0; }
    size_t size() const { return size_; }

    // Copies no more than the room into a program's buffer, and gives what it says to have used. -E2BIG when there is
    // more.
    int64_t deliver(uint8_t *to, size_t room, const forgery *f)
    {
        if (f && f->content) {
            clear();
            (void)append(*f->content);
        }
        if (f && f->cut)
            size_ = std::min(size_, *f->cut);
        if (size_ > room)
            return -E2BIG;
        if (!to && size_ > 0)
            return -EFAULT;
        std::copy_n(content_, size_, to);
        return f && f->length ? int64_t(*f->length) : int64_t(size_);
    }

private:
    uint8_t content_[131072];
    size_t size_ = 0;
};

// One request: what is asked, of which interface or station, by whom the answer is made.
struct context {
    const description &air;
    double seconds;
    request what;
    reply &out;
    void (*log)(const char *request, const char *format, ...) __attribute__((format(printf, 2, 3)));
};

int answer_wireless(const context &, const vap &, uint8_t *block);
int answer_tracker(const context &, const char *interface, uint8_t *record);

} // namespace sim::driver
