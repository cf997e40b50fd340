// SPDX-License-Identifier: MIT
#include "core/list.h"
#include "core/owner.h"
#include "wireless/scan.h"
#include "wireless/wire.h"

#include <algorithm>

namespace {

constexpr size_t capability_at = 24;
constexpr size_t ssid_length_at = 85;
constexpr size_t elements_length_at = 86;
constexpr uint32_t privacy_bit = 0x10;
constexpr uint32_t ibss_bit = 0x02;

#define FIELD(name, offset, width) WIRE_FIELD(scanlist, name, offset, width)

constexpr wire_field fields[] = {
    FIELD(frequency, 2, 2), FIELD(flags, 4, 2),  FIELD(beacon_interval, 6, 2), FIELD(age, 16, 4),
    FIELD(noise, 20, 1),    FIELD(rssi, 21, 1),  FIELD(width, 28, 4),          FIELD(max_rate, 36, 4),
    FIELD(channel, 40, 1),  FIELD(bssid, 42, 6),
};
static_assert(fits(fields, scan_entry_header));

} // namespace

int add_scan_record(const uint8_t *entry, size_t length, void *list)
{
    auto *record = static_cast<scanlist *>(calloc(1, sizeof(scanlist)));
    if (!record)
        return -1;
    copy_fields<fields>(*record, entry);
    const uint32_t capability = load_le16(entry + capability_at);
    record->privacy = capability & privacy_bit;
    record->ibss = capability & ibss_bit;
    const size_t room = length - scan_entry_header;
    const size_t ssid_length = std::min<size_t>(entry[ssid_length_at], room);
    const uint8_t *ssid = entry + scan_entry_header;
    memcpy(record->ssid, ssid, std::min(ssid_length, sizeof record->ssid - 1));
    const size_t elements = std::min<size_t>(load_le16(entry + elements_length_at), room - ssid_length);
    parse_scan_result_ies(entry, ssid + ssid_length, int(elements), take_vendor_element, record);
    list_add_tail(static_cast<vexa_list *>(list), &record->links);
    return 0;
}

extern "C" vexa_list *get_scanlist(const char *ifname)
{
    auto *head = static_cast<vexa_list *>(malloc(sizeof(vexa_list)));
    if (!head)
        return nullptr;
    list_init(head);
    (void)parse_scan_results(ifname, add_scan_record, head); // without an answer there is nothing in the list
    return head;
}

// Of stations, too: both kinds of record begin with their links.
extern "C" void free_scanlist(vexa_list *head)
{
    static_assert(offsetof(scanlist, links) == 0 && offsetof(stainfo, links) == 0);
    if (!head)
        return;
    while (head->prev != head) {
        vexa_list *last = head->prev;
        list_remove(last);
        free(last);
    }
    free(head);
}
