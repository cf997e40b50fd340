// SPDX-License-Identifier: MIT
#pragma once

#include "core/owner.h"

#include <cstdint>
#include <libvexa.h>

// Finds the first entry of a configuration by its key, for as long as a parse or a comparison lasts. Without memory
// for its table it walks the list instead: slower, with the same answers.
class key_index {
public:
    // Knows the entries that hang on @head now, and those added later.
    explicit key_index(cfg_entry *const &head);

    cfg_entry *find(const char *key) const;

    // The entry known under the key of @entry; NULL makes @entry known, and the caller links it to the end of the list.
    cfg_entry *find_or_add(cfg_entry *entry);

private:
    struct slot {
        cfg_entry *entry;
        uint64_t hash;
    };

    uint64_t hash(const char *key) const;
    slot *place(const char *key, uint64_t hash) const;
    void resize(size_t size);

    cfg_entry *const &head_;
    unique_malloc<slot> slots_;
    size_t size_ = 0; // a power of two
    size_t used_ = 0;
    uint64_t seed_;
};
