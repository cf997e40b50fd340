// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <span>
#include <type_traits>
#include <utility>

// The driver's records: little-endian, at odd places.

constexpr uint64_t load_le(const uint8_t *p, size_t width)
{
    uint64_t value = 0;
    while (width > 0)
        value = value << 8 | p[--width];
    return value;
}

constexpr uint16_t load_le16(const uint8_t *p)
{
    return uint16_t(load_le(p, 2));
}

constexpr uint32_t load_le32(const uint8_t *p)
{
    return uint32_t(load_le(p, 4));
}

// Where a field of the driver's goes: a number to a member of at least its width, bytes to an array.
struct wire_field {
    uint16_t offset;
    uint8_t width;
    bool is_number;
    uint16_t member;
    uint8_t size;
};

#define WIRE_FIELD(record, name, offset, width)                                                                        \
    wire_field                                                                                                         \
    {                                                                                                                  \
        offset, width, !std::is_array_v<decltype(record::name)>, offsetof(record, name), sizeof(record::name)          \
    }

// Every field lies within the driver's record and fits its member.
template <size_t count>
constexpr bool fits(const wire_field (&fields)[count], size_t wire_size)
{
    for (const wire_field &f : fields)
        if (f.offset + size_t{f.width} > wire_size || f.width > f.size || (f.is_number && f.size > sizeof(uint64_t)))
            return false;
    return true;
}

inline void store_number(uint8_t *member, uint8_t size, uint64_t value)
{
    const auto narrow = [&]<typename T>(T n) { memcpy(member, &n, sizeof n); };
    switch (size) {
    case 1:
        return narrow(uint8_t(value));
    case 2:
        return narrow(uint16_t(value));
    case 4:
        return narrow(uint32_t(value));
    default:
        return narrow(value);
    }
}

template <typename Record>
void copy_fields(Record &record, const uint8_t *wire, std::span<const wire_field> fields)
{
    static_assert(std::is_standard_layout_v<Record>);
    auto *base = reinterpret_cast<uint8_t *>(&record);
    for (const wire_field &f : fields) {
        if (f.is_number)
            store_number(base + f.member, f.size, load_le(wire + f.offset, f.width));
        else
            memcpy(base + f.member, wire + f.offset, f.width);
    }
}
