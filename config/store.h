// SPDX-License-Identifier: MIT
#pragma once

#include <bit>
#include <cstdint>
#include <libvexa.h>
#include <memory>

// For walks that look at keys only: entries mostly lie in memory as they stood in the file, and asking for what lies
// further on is harmless where they do not.
inline void fetch_ahead(const cfg_entry *entry)
{
    constexpr uintptr_t distance = 4096, cache_line = 64;
    __builtin_prefetch(std::bit_cast<const void *>(uintptr_t(entry) + distance));
    __builtin_prefetch(std::bit_cast<const void *>(uintptr_t(entry) + distance + cache_line)); // where the key begins
}

// Releases one entry with its texts.
void free_entry(cfg_entry *entry);

struct drop_entry {
    void operator()(cfg_entry *entry) const noexcept { free_entry(entry); }
};
using unique_entry = std::unique_ptr<cfg_entry, drop_entry>;

// Appends a node that borrows the entry's texts; false when memory runs out.
bool append_node(cfg_it_ctx &list, const cfg_entry &entry);
