// SPDX-License-Identifier: MIT
#include "config/key_table.h"

#include "config/key.h"
#include "config/store.h"

#include <cstring>
#include <span>

namespace {

// Eight characters with their letters in lower case.
uint64_t load_folded(const char *text)
{
    constexpr uint64_t each = 0x0101010101010101;
    uint64_t word;
    memcpy(&word, text, sizeof word);
    const uint64_t low = word & 0x7f * each;
    const uint64_t from_a = low + (0x80 - 'A') * each; // bit 7 says so, in this and the next
    const uint64_t beyond_z = low + (0x7f - 'Z') * each;
    const uint64_t is_upper = from_a & ~beyond_z & ~word & 0x80 * each;
    return word | is_upper >> 2;
}

uint64_t mix(uint64_t a, uint64_t b)
{
    const auto product = static_cast<unsigned __int128>(a) * b;
    return uint64_t(product) ^ uint64_t(product >> 64);
}

// Mostly even the case is the same.
bool same_key(const char *a, const char *b)
{
    return strcmp(a, b) == 0 || equal_keys(a, b);
}

} // namespace

uint64_t key_table::hash(const char *key) const
{
    constexpr uint64_t multiplier = 0x9e3779b97f4a7c15; // the golden ratio
    constexpr size_t step = sizeof(uint64_t);
    const size_t size = strlen(key);
    uint64_t code = seed_ ^ size;
    uint64_t rest = 0;
    if (size >= step) {
        for (size_t at = 0; at + step < size; at += step)
            code = mix(code ^ load_folded(key + at), multiplier);
        rest = load_folded(key + size - step);
    } else {
        for (size_t at = 0; at < size; at++)
            rest = rest << 8 | lower_case(key[at]);
    }
    return mix(code ^ rest, multiplier);
}

// Where the entry with this key is, or would be.
key_table::slot &key_table::place(const char *key, uint64_t hash) const
{
    for (size_t i = hash;; i++) {
        slot &s = slots_[i & (size_ - 1)];
        if (!s.entry || (s.hash == hash && same_key(s.entry->key, key)))
            return s;
    }
}

bool key_table::reserve(size_t entries)
{
    size_t size = size_;
    while (size / 4 < entries)
        size *= 2;
    if (size == size_)
        return true;
    unique_malloc<slot> larger{static_cast<slot *>(calloc(size, sizeof(slot)))};
    if (!larger)
        return false;
    const slot *old = std::exchange(slots_, larger.get());
    const slot *old_end = old + std::exchange(size_, size);
    for (; old < old_end; old++)
        if (old->entry)
            place(old->entry->key, old->hash) = *old;
    many_ = std::move(larger);
    return true;
}

void key_table::clear()
{
    memset(slots_, 0, size_ * sizeof(slot));
    used_ = 0;
}

cfg_entry *key_table::find_or_add(cfg_entry *entry)
{
    const uint64_t code = hash(entry->key);
    slot &found = place(entry->key, code);
    if (found.entry)
        return found.entry;
    found = {entry, code};
    used_++;
    return nullptr;
}

// Gives the rest of the list.
cfg_entry *key_table::fill(batch &next, cfg_entry *list) const
{
    next.size = 0;
    for (; list && next.size < std::size(next.wanted); list = list->next) {
        fetch_ahead(list);
        const uint64_t code = hash(list->key);
        __builtin_prefetch(&slots_[code & (size_ - 1)]);
        next.wanted[next.size++] = {list, code};
    }
    return list;
}

void key_table::add_all(cfg_entry *list)
{
    batch next;
    while (list) {
        list = fill(next, list);
        for (const slot &wanted : std::span{next.wanted, next.size})
            if (slot &found = place(wanted.entry->key, wanted.hash); !found.entry) {
                found = wanted;
                used_++;
            }
    }
}

bool key_table::walk::next()
{
    if (++at_ >= batch_.size) {
        if (!rest_)
            return false;
        rest_ = table_.fill(batch_, rest_);
        at_ = 0;
    }
    known_ = table_.place(entry()->key, batch_.wanted[at_].hash).entry;
    return true;
}
