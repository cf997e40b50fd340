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

uint8_t tag_of(uint64_t hash)
{
    return uint8_t(hash >> 56 | 1);
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
size_t key_table::place(const char *key, uint64_t hash) const
{
    for (size_t at = hash & (size_ - 1);; at = (at + 1) & (size_ - 1)) {
        if (tags_[at] == 0)
            return at;
        if (tags_[at] == tag_of(hash) && slots_[at].hash == hash && same_key(slots_[at].entry->key, key))
            return at;
    }
}

void key_table::put(size_t at, const slot &known)
{
    slots_[at] = known;
    tags_[at] = tag_of(known.hash);
}

// The memory is zero, and has room for so many.
void key_table::use(void *memory, size_t size)
{
    slots_ = static_cast<slot *>(memory);
    tags_ = reinterpret_cast<uint8_t *>(slots_ + size);
    size_ = size;
}

bool key_table::reserve(size_t entries)
{
    size_t size = size_;
    while (size / 2 < entries)
        size *= 4;
    if (size == size_)
        return true;
    unique_malloc<char> larger{static_cast<char *>(calloc(size, room_of_one))};
    if (!larger)
        return false;
    const slot *const old_slots = slots_;
    const std::span old_tags{tags_, size_};
    use(larger.get(), size);
    for (size_t at = 0; at < old_tags.size(); at++)
        if (old_tags[at] != 0)
            put(place(old_slots[at].entry->key, old_slots[at].hash), old_slots[at]);
    many_ = std::move(larger);
    return true;
}

void key_table::clear()
{
    memset(slots_, 0, size_ * room_of_one);
    used_ = 0;
}

cfg_entry *key_table::find_or_add(cfg_entry *entry)
{
    const uint64_t code = hash(entry->key);
    const size_t at = place(entry->key, code);
    if (tags_[at] != 0)
        return slots_[at].entry;
    put(at, {entry, code});
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
        __builtin_prefetch(&tags_[code & (size_ - 1)]);
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
            if (const size_t at = place(wanted.entry->key, wanted.hash); tags_[at] == 0) {
                put(at, wanted);
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
    const size_t at = table_.place(entry()->key, batch_.wanted[at_].hash);
    known_ = table_.tags_[at] != 0 ? table_.slots_[at].entry : nullptr;
    return true;
}
