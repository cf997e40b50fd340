// SPDX-License-Identifier: MIT
#pragma once

#include "core/owner.h"

#include <cstring>
#include <net/if.h>
#include <sys/ioctl.h>
#include <sys/socket.h>

// A request to the kernel about a named interface: a zeroed block that begins with the name (ifreq, iwreq), and the
// socket that takes it.
template <typename Block = ifreq>
struct interface_request {
    explicit interface_request(const char *ifname) noexcept : sock{socket(AF_INET, SOCK_DGRAM | SOCK_CLOEXEC, 0)}
    {
        static_assert(sizeof block >= IFNAMSIZ);
        memcpy(static_cast<void *>(&block), ifname, strnlen(ifname, IFNAMSIZ - 1)); // the rest stays zero
    }

    bool issue(unsigned code) noexcept { return ioctl(sock.get(), code, &block) >= 0; }

    unique_fd sock;
    Block block{};
};
