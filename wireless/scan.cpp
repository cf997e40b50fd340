// SPDX-License-Identifier: MIT
#include "wireless/scan.h"

#include "wireless/driver.h"
#include "wireless/wire.h"

namespace {

constexpr size_t first_size = 24576;
constexpr size_t element_header = 2;

} // namespace

// Radio frames of strangers lie in there: the walk ends at the first length that cannot be.
void walk_scan_entries(const uint8_t *answer, size_t length, vexa_scan_callback callback, void *context)
{
    while (length >= scan_entry_header) {
        const size_t size = load_le16(answer);
        if (size < scan_entry_header || size > length)
            return;
        callback(answer, size, context);
        answer += size;
        length -= size;
    }
}

extern "C" int parse_scan_results(const char *ifname, vexa_scan_callback callback, void *context)
{
    if (!ifname || !callback || !context)
        return -1;
    const unique_fd sock = request_socket();
    answer_buffer answer{first_size};
    int length = -1;
    while (answer && (length = answer.ask(sock.get(), ifname, ioctl_scan_results)) < 0)
        if (errno != E2BIG || !answer.grow())
            return -1;
    if (length < int{scan_entry_header})
        return -1;
    walk_scan_entries(answer.data(), size_t(length), callback, context);
    return 0;
}

extern "C" int parse_scan_result_ies(const void *, const uint8_t *element, int count, vexa_scan_callback callback,
                                     void *context)
{
    while (count >= int{element_header}) {
        const int size = element[1] + int{element_header};
        if (size > count)
            break;
        callback(element, size_t(size), context);
        element += size;
        count -= size;
    }
    return 0;
}
