// SPDX-License-Identifier: MIT
#pragma once

#include <libvexa.h>

static_assert(sizeof(cfg_entry) == 4 * sizeof(void *) && sizeof(cfg_it) == sizeof(cfg_entry)); // known to hosts

// Releases one entry with its texts.
void free_entry(cfg_entry *entry);

// Appends a node that borrows the entry's texts; false when memory runs out.
bool append_node(cfg_it_ctx &list, const cfg_entry &entry);
