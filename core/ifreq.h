// SPDX-License-Identifier: MIT
#pragma once

#include "core/owner.h"

#include <cstring>
#include <net/if.h>
#include <sys/ioctl.h>
#include <sys/socket.h>

// A zeroed request about a named interface, which begins with the name (ifreq and its like).
template <typename Block>
Block named_request(const char *ifname) noexcept
{
    static_assert(sizeof(Block) >= IFNAMSIZ);
    Block block{};
    memcpy(static_cast<void *>(&block), ifname, strnlen(ifname, IFNAMSIZ - 1)); // the rest stays zero
    return block;
}

inline unique_fd request_socket() noexcept
{
    return unique_fd{socket(AF_INET, SOCK_DGRAM | SOCK_CLOEXEC, 0)};
}

// A request to the kernel about a named interface, and the socket that takes it.
template <typename Block = ifreq>
struct interface_request {
    explicit interface_request(const char *ifname) noexcept : block{named_request<Block>(ifname)} {}

    bool issue(unsigned code) noexcept { return ioctl(sock.get(), code, &block) >= 0; }

    unique_fd sock = request_socket();
    Block block;
};
