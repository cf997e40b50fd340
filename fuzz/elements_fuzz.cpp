// SPDX-License-Identifier: MIT
#include "fuzz/check.h"
#include "wireless/scan.h"

namespace {

struct walked {
    const uint8_t *begin, *end;
    scanlist record;
};

int take(const uint8_t *element, size_t length, void *context)
{
    auto *w = static_cast<walked *>(context);
    check(element >= w->begin && element + length <= w->end && length == size_t{2} + element[1]);
    return take_vendor_element(element, length, &w->record);
}

} // namespace

// The information elements of a frame.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    libvexa_log_level = 0;
    walked w{data, data + size, {}};
    check(parse_scan_result_ies(nullptr, data, int(size), take, &w) == 0);
    check(w.record.vexa_ie == 1 || w.record.vexa_ie_value == 0);
    for (const uint32_t flag : w.record.vexa_ie_flags)
        check(flag <= 1);
    return 0;
}
