// SPDX-License-Identifier: MIT
#pragma once

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <dirent.h>
#include <jansson.h>
#include <libvexa.h>
#include <memory>
#include <unistd.h>
#include <utility>

// One owner per kind of resource: whatever a function opens is closed on each way out of it.

class keep_errno {
public:
    keep_errno() noexcept : saved_{errno} {}
    keep_errno(const keep_errno &) = delete;
    keep_errno &operator=(const keep_errno &) = delete;
    ~keep_errno() { errno = saved_; }

private:
    int saved_;
};

// Leaving a scope must not change what the caller reports, so closing keeps errno.
struct close_file {
    void operator()(FILE *f) const noexcept
    {
        const keep_errno kept;
        (void)fclose(f);
    }
};

struct close_dir {
    void operator()(DIR *d) const noexcept
    {
        const keep_errno kept;
        (void)closedir(d);
    }
};

struct free_memory {
    void operator()(void *p) const noexcept { free(p); }
};

struct drop_json {
    void operator()(json_t *j) const noexcept { json_decref(j); }
};

struct destroy_buffer {
    void operator()(buffer *b) const noexcept { buffer_destroy(b); }
};

using unique_file = std::unique_ptr<FILE, close_file>;
using unique_dir = std::unique_ptr<DIR, close_dir>;
template <typename T>
using unique_malloc = std::unique_ptr<T, free_memory>; // release() may cross the C boundary
using unique_text = unique_malloc<char>;
using unique_buffer = std::unique_ptr<buffer, destroy_buffer>;
using json_ref = std::unique_ptr<json_t, drop_json>; // exactly one reference

class unique_fd {
public:
    explicit unique_fd(int fd = -1) noexcept : fd_{fd} {}
    unique_fd(unique_fd &&other) noexcept : fd_{other.release()} {}
    unique_fd &operator=(unique_fd &&other) noexcept
    {
        reset(other.release());
        return *this;
    }
    ~unique_fd() { reset(); }

    explicit operator bool() const noexcept { return fd_ >= 0; } // 0 is a descriptor, too
    int get() const noexcept { return fd_; }
    [[nodiscard]] int release() noexcept { return std::exchange(fd_, -1); }
    void reset(int fd = -1) noexcept
    {
        const keep_errno kept;
        if (fd_ >= 0)
            (void)::close(fd_); // never repeated: after EINTR the number may be someone else's
        fd_ = fd;
    }

private:
    int fd_;
};
