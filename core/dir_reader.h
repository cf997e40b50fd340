// SPDX-License-Identifier: MIT
#pragma once

#include "core/owner.h"

#include <cstdint>
#include <fcntl.h>

struct directory_entry {
    const char *name; // valid until the next entry is taken
    uint8_t type;     // DT_DIR, ...; DT_UNKNOWN when the file system does not say
};

// The entries of a directory, "." and ".." too, in the order and in the large pieces that the kernel gives. Unlike
// opendir() it asks for no memory and nothing else of the kernel.
class dir_reader {
public:
    explicit dir_reader(unique_fd fd) noexcept : fd_{std::move(fd)} {}

    bool next(directory_entry &entry)
    {
        if (at_ == end_ && !read_on())
            return false;
        entry = take();
        return true;
    }

    bool is_directory(const directory_entry &entry) const;
    int fd() const { return fd_.get(); }
    int error() const { return error_; } // errno of what ended the reading; 0 at the end of the directory

private:
    bool read_on();
    directory_entry take();

    unique_fd fd_;
    int error_ = 0;
    size_t at_ = 0;
    size_t end_ = 0;
    alignas(uint64_t) char block_[8192];
};

// Without a descriptor, and with errno, when it cannot be opened.
unique_fd open_directory(const char *path, int dirfd = AT_FDCWD);
