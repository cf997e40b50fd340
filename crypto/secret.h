// SPDX-License-Identifier: MIT
#pragma once

#include <cstring>

// Key material on the stack: cleared when it goes out of scope, in a way that the compiler may not leave out.
template <typename T>
class secret {
public:
    secret() noexcept = default;
    secret(const secret &) = delete;
    secret &operator=(const secret &) = delete;
    ~secret() { explicit_bzero(&value_, sizeof value_); }

    T *operator->() noexcept { return &value_; }
    T *get() noexcept { return &value_; }

private:
    T value_;
};
