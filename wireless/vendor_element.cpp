// SPDX-License-Identifier: MIT
#include "core/log.h"
#include "wireless/scan.h"
#include "wireless/wire.h"

namespace {

constexpr char log_tag[] = "libvexa";
constexpr uint8_t vendor_specific = 221;
constexpr size_t shortest = 11; // of what follows the length

enum : uint32_t { type_plain = 0x000000, type_plain2 = 0x000100, type_extended = 0x000101 };

constexpr uint32_t number_of(const uint8_t *p)
{
    return uint32_t{p[0]} << 16 | uint32_t{p[1]} << 8 | p[2];
}

// What parts an extended element may have; one of another length is passed over.
struct part {
    uint8_t id;
    uint8_t shortest, longest;
    uint16_t member;
};
#define PART(id, shortest, name)                                                                                       \
    part                                                                                                               \
    {                                                                                                                  \
        id, shortest, sizeof(scanlist::name), offsetof(scanlist, name)                                                 \
    }
constexpr part parts[] = {
    PART(0x81, 6, vexa_ie_mac),
    {0x82, 1, 0, 0},
    {0x83, 1, 0, 0}, // known and of no use here
    PART(0x84, 0, vexa_ie_name),
    PART(0x85, 0, vexa_ie_data),
    PART(0x88, 36, vexa_ie_blob1),
    PART(0x89, 36, vexa_ie_blob2),
};

// Flags of the record by the bits of the flag byte.
constexpr uint16_t flag_members[] = {
#define FLAG(name) uint16_t(offsetof(scanlist, name))
    FLAG(vexa_ie_flags[1]), FLAG(vexa_ie_flags[2]), FLAG(vexa_ie_flags[4]),  FLAG(vexa_ie_flags[5]),
    FLAG(vexa_ie_flags[3]), FLAG(vexa_ie_flags[6]), FLAG(vexa_ie_flags2[0]), FLAG(vexa_ie_flags2[1]),
};

uint8_t *member_at(scanlist &record, size_t offset)
{
    return reinterpret_cast<uint8_t *>(&record) + offset;
}

void take_part(scanlist &record, const uint8_t *data, uint8_t id, uint8_t length)
{
    for (const part &p : parts) {
        if (p.id != id)
            continue;
        if (length >= p.shortest && length <= p.longest) {
            memset(member_at(record, p.member), 0, p.longest);
            memcpy(member_at(record, p.member), data, length);
        }
        return;
    }
    log_debug("VEXA_IE unknown field %#02x len %u", unsigned{id}, unsigned{length});
}

void take_extended(scanlist &record, const uint8_t *element, size_t length)
{
    record.vexa_ie_value = load_le16(element + 11);
    record.vexa_ie_flags[0] = 1;
    for (size_t bit = 0; bit < std::size(flag_members); bit++)
        if (element[8] >> bit & 1)
            store_number<sizeof(uint32_t)>(member_at(record, flag_members[bit]), uint32_t{1});
    // The last part begins no later than three bytes before the end, as the length byte counts.
    for (size_t at = 13; element[1] > at + 2 && at + 2 + element[at + 1] <= length; at += size_t{2} + element[at + 1])
        take_part(record, element + at + 2, element[at], element[at + 1]);
}

} // namespace

int take_vendor_element(const uint8_t *element, size_t length, void *context)
{
    if (element[0] != vendor_specific || element[1] < shortest || number_of(element + 2) != VEXA_OUI)
        return 0;
    auto &record = *static_cast<scanlist *>(context);
    switch (number_of(element + 5)) {
    case type_plain:
    case type_plain2:
        record.vexa_ie = 1;
        record.vexa_ie_value = load_le16(element + 10);
        break;
    case type_extended:
        record.vexa_ie = 1;
        take_extended(record, element, length);
        break;
    default:
        break;
    }
    return 0;
}
