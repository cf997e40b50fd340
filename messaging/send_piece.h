// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdint>
#include <sys/socket.h>

// Where pieces go, and on whose behalf the lines about them are logged.
struct outlet {
    int fd;
    int timeout_s; // for each step forward
    const sockaddr *addr;
    socklen_t addrlen;
    const char *module;
    const char *func;
    uint32_t error_gate; // of the line about a refused send
    int error_priority;
};

// Sends the whole piece without blocking longer than the time-out. Returns false, logged, when that fails; errno is
// ETIMEDOUT after the time.
bool send_piece(const outlet &out, const void *data, size_t size);
