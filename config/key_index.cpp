// SPDX-License-Identifier: MIT
#include "config/key_index.h"

#include "config/key.h"
#include "config/lookup.h"

#include <cstring>

namespace {

constexpr size_t smallest = 64;

// The lower-case form of eight characters at once.
constexpr uint64_t lower_case_of_8(uint64_t word)
{
    constexpr uint64_t each = 0x0101010101010101;
    const uint64_t low = word & 0x7f * each;
    const uint64_t from_a = low + (0x80 - 'A') * each;
    const uint64_t beyond_z = low + (0x7f - 'Z') * each;
    const uint64_t upper = from_a & ~beyond_z & ~word & 0x80 * each;
    return word | upper >> 2;
}

uint64_t load(const char *bytes, size_t size)
{
    uint64_t word = 0;
    memcpy(&word, bytes, size);
    return lower_case_of_8(word);
}

uint64_t mix(uint64_t a, uint64_t b)
{
    const auto product = static_cast<unsigned __int128>(a) * b;
    return uint64_t(product) ^ uint64_t(product >> 64);
}

} // namespace

// The seed is an address, so that no file can be made to have all its keys in one place.
key_index::key_index(cfg_entry *const &head) : head_{head}, seed_{mix(uint64_t(uintptr_t(this)), 0x9e3779b97f4a7c15)}
{
    size_t size = smallest;
    while (size / 2 < get_cfg_count(head))
        size *= 2;
    resize(size);
    for (cfg_entry *entry = head; entry && slots_; entry = entry->next)
        find_or_add(entry);
}

cfg_entry *key_index::find(const char *key) const
{
    return slots_ ? place(key, hash(key))->entry : find_entry(head_, key);
}

cfg_entry *key_index::find_or_add(cfg_entry *entry)
{
    if (slots_ && used_ * 2 >= size_)
        resize(size_ * 2);
    if (!slots_)
        return find_entry(head_, entry->key);
    const uint64_t code = hash(entry->key);
    slot *found = place(entry->key, code);
    if (found->entry)
        return found->entry;
    *found = {entry, code};
    used_++;
    return nullptr;
}

uint64_t key_index::hash(const char *key) const
{
    size_t left = strlen(key);
    uint64_t code = seed_ ^ left;
    for (; left > 8; left -= 8, key += 8)
        code = mix(code ^ load(key, 8), 0xe7037ed1a0b428db);
    return mix(code ^ load(key, left), 0xe7037ed1a0b428db ^ seed_);
}

// Where an entry of this key is, or the free slot where it would be.
key_index::slot *key_index::place(const char *key, uint64_t hash) const
{
    for (size_t i = hash;; i++) {
        slot *s = slots_.get() + (i & (size_ - 1));
        if (!s->entry || (s->hash == hash && equal_keys(s->entry->key, key)))
            return s;
    }
}

// Leaves the index without a table when memory runs out.
void key_index::resize(size_t size)
{
    const unique_malloc<slot> old = std::move(slots_);
    const size_t old_size = size_;
    slots_.reset(static_cast<slot *>(calloc(size, sizeof(slot))));
    size_ = size;
    if (!slots_)
        return;
    for (size_t i = 0; i < old_size; i++)
        if (const slot &s = old.get()[i]; s.entry)
            *place(s.entry->key, s.hash) = s;
}
