// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <iterator>
#include <type_traits>
#include <utility>

// The driver's records: little-endian, at odd places.

constexpr uint16_t load_le16(const uint8_t *p)
{
    return uint16_t(p[0] | p[1] << 8);
}

constexpr uint32_t load_le32(const uint8_t *p)
{
    return p[0] | uint32_t{p[1]} << 8 | uint32_t{p[2]} << 16 | uint32_t{p[3]} << 24;
}

constexpr uint64_t load_le64(const uint8_t *p)
{
    return load_le32(p) | uint64_t{load_le32(p + 4)} << 32;
}

constexpr bool is_number_width(size_t width)
{
    return width == 1 || width == 2 || width == 4 || width == 8;
}

constexpr void store_le32(uint8_t *p, uint32_t value)
{
    for (int i = 0; i < 4; i++)
        p[i] = uint8_t(value >> 8 * i);
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
        if (f.offset + size_t{f.width} > wire_size || f.width > f.size ||
            (f.is_number && !(is_number_width(f.width) && is_number_width(f.size))))
            return false;
    return true;
}

template <size_t width>
constexpr auto load_le(const uint8_t *p)
{
    if constexpr (width == 1)
        return *p;
    else if constexpr (width == 2)
        return load_le16(p);
    else if constexpr (width == 4)
        return load_le32(p);
    else
        return load_le64(p);
}

template <size_t size, typename Number>
void store_number(uint8_t *member, Number value)
{
    using wider = std::conditional_t<size == 8, uint64_t, std::conditional_t<size == 4, uint32_t, Number>>;
    const wider stored = value;
    static_assert(sizeof stored == size);
    memcpy(member, &stored, sizeof stored);
}

template <wire_field f>
void copy_field(uint8_t *record, const uint8_t *wire)
{
    if constexpr (f.is_number)
        store_number<f.size>(record + f.member, load_le<f.width>(wire + f.offset));
    else
        memcpy(record + f.member, wire + f.offset, f.width);
}

// One load and one store for each field, without a loop: a device asks for hundreds of stations at a time.
template <const auto &fields, typename Record>
void copy_fields(Record &record, const uint8_t *wire)
{
    static_assert(std::is_standard_layout_v<Record>);
    auto *base = reinterpret_cast<uint8_t *>(&record);
    [&]<size_t... i>(std::index_sequence<i...>)
    {
        (copy_field<fields[i]>(base, wire), ...);
    }
    (std::make_index_sequence<std::size(fields)>{});
}
