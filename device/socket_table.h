// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <libvexa.h>
#include <memory>

// The kernel's sockets by their inodes. Null without memory (logged).
vexa_socket_table *cache_sockets();
void free_sockets(vexa_socket_table *table); // NULL is allowed

const vexa_socket *find_socket(const vexa_socket_table &table, uint32_t inode);

struct drop_sockets {
    void operator()(vexa_socket_table *table) const noexcept { free_sockets(table); }
};
using unique_sockets = std::unique_ptr<vexa_socket_table, drop_sockets>;
