// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdint>

// While this lives, requests for memory get none: after so many that do, and as many in a row as said. What it guards
// is kept short, for nothing else in the program gets memory either.
struct failing_memory {
    explicit failing_memory(size_t after, size_t in_a_row = SIZE_MAX);
    failing_memory(const failing_memory &) = delete;
    failing_memory &operator=(const failing_memory &) = delete;
    ~failing_memory();
    static bool has_failed(); // this one or the last one
};
