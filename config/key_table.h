// SPDX-License-Identifier: MIT
#pragma once

#include "core/owner.h"

#include <cstdint>
#include <libvexa.h>

// Finds entries by their keys, for as long as a file is parsed or compared with another. It has room for a few entries
// from the start, whatever the memory.
class key_table {
    struct slot {
        cfg_entry *entry;
        uint64_t hash;
    };

    // A large table is far away: the slots of a batch of keys are asked for together, so that their ways overlap.
    struct batch {
        slot wanted[16]; // not the table's: the entries to look up
        size_t size = 0;
    };

public:
    key_table() noexcept : seed_{uint64_t(uintptr_t(this))} { use(few_, few); }
    key_table(const key_table &) = delete;
    key_table &operator=(const key_table &) = delete;

    // Makes room for so many entries in all; false when memory runs out, and what is there stays.
    bool reserve(size_t entries);
    bool is_full() const { return used_ * 2 >= size_; }
    size_t size() const { return used_; }
    void clear();

    // The entry known under the key of @entry; NULL means that it is @entry from now on. The table must not be full.
    cfg_entry *find_or_add(cfg_entry *entry);

    // The same for a whole list, of which the first entry of each key becomes known. There must be room for all of it.
    void add_all(cfg_entry *list);

    // Goes along a list and tells the entry that the table knows under each key, or NULL.
    class walk {
    public:
        walk(const key_table &table, cfg_entry *list) noexcept : table_{table}, rest_{list} {}
        bool next();
        cfg_entry *entry() const { return batch_.wanted[at_].entry; }
        cfg_entry *known() const { return known_; }

    private:
        const key_table &table_;
        cfg_entry *rest_;
        batch batch_;
        size_t at_ = 0;
        cfg_entry *known_ = nullptr;
    };

private:
    uint64_t hash(const char *key) const;
    size_t place(const char *key, uint64_t hash) const;
    void put(size_t at, const slot &known);
    void use(void *memory, size_t size);
    cfg_entry *fill(batch &next, cfg_entry *list) const;

    static constexpr size_t few = 64;
    static constexpr size_t room_of_one = sizeof(slot) + 1;
    alignas(slot) char few_[few * room_of_one]{};
    unique_malloc<char> many_;
    slot *slots_;
    // Of each slot some bits of its hash and one that is set, or 0. They stay near, and a key that is not known mostly
    // needs no more.
    uint8_t *tags_;
    size_t size_; // a power of two
    size_t used_ = 0;
    uint64_t seed_; // an address, so that no file can be made to have all its keys in one place
};
