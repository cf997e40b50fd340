// SPDX-License-Identifier: MIT
#pragma once

#include <libvexa.h>

// Counts the descriptors of a process into `entry.fd_count`, and lists them when asked to. `sockets` may be null.
void read_descriptors(int proc, vexa_ps_entry &entry, bool list, const vexa_socket_table *sockets);

void free_descriptors(vexa_ps_entry &entry);
