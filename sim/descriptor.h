// SPDX-License-Identifier: MIT
#pragma once

#include <unistd.h>
#include <utility>

namespace sim {

class descriptor {
public:
    explicit descriptor(int fd = -1) noexcept : fd_{fd} {}
    descriptor(descriptor &&other) noexcept : fd_{std::exchange(other.fd_, -1)} {}
    descriptor &operator=(descriptor &&other) noexcept
    {
        std::swap(fd_, other.fd_);
        return *this;
    }
    ~descriptor()
    {
        if (fd_ >= 0)
            (void)::close(fd_);
    }

    explicit operator bool() const noexcept { return fd_ >= 0; }
    int get() const noexcept { return fd_; }

private:
    int fd_;
};

} // namespace sim
