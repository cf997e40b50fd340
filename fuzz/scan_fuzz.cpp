// SPDX-License-Identifier: MIT
#include "fuzz/check.h"
#include "wireless/scan.h"

#include <cstring>

// An answer to a request for scan results.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    libvexa_log_level = 0;
    vexa_list head{&head, &head};
    walk_scan_entries(data, size, add_scan_record, &head);
    size_t count = 0;
    while (head.next != &head) {
        vexa_list *link = head.next;
        const auto *record = reinterpret_cast<const scanlist *>(link); // the links come first
        check(memchr(record->ssid, 0, sizeof record->ssid) != nullptr && record->vexa_ie <= 1);
        head.next = link->next;
        free(link);
        count++;
    }
    check(count <= size / scan_entry_header);
    return 0;
}
