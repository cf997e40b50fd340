// SPDX-License-Identifier: MIT
#pragma once

#include <csignal>

// While this lives, writing to a peer that is gone raises no SIGPIPE in this thread: the signal is held back and what
// came meanwhile is taken away. The disposition, which is the host's, stays.
class sigpipe_guard {
public:
    sigpipe_guard();
    sigpipe_guard(const sigpipe_guard &) = delete;
    sigpipe_guard &operator=(const sigpipe_guard &) = delete;
    ~sigpipe_guard();

private:
    sigset_t before_;
    bool was_pending_;
};
