// SPDX-License-Identifier: MIT
#pragma once

#include <sys/types.h>
#include <vector>

// Sleeping processes with descriptors of all kinds, for as long as this lives. The program moves to a network of its
// own if it may.
class process_population {
public:
    static constexpr int processes = 300;
    static constexpr int descriptors = 20; // of each process
    static constexpr int sockets = 8;      // among them

    process_population();
    process_population(const process_population &) = delete;
    process_population &operator=(const process_population &) = delete;
    ~process_population();

private:
    std::vector<pid_t> children_;
};
