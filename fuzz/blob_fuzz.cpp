// SPDX-License-Identifier: MIT
#include "fuzz/check.h"

#include <cstdlib>
#include <cstring>
#include <libvexa.h>
extern "C" {
#include <libubox/blobmsg_json.h>
}

// A message from the bus, read by name and shown as JSON.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    constexpr blobmsg_policy policy[] = {{"a", BLOBMSG_TYPE_STRING}, {"b", BLOBMSG_CAST_INT64}};
    libvexa_log_level = 0;
    const size_t padded = blob_padded(BLOB_WORD + size);
    auto *message = static_cast<blob_attr *>(calloc(1, padded));
    if (!message || padded > BLOB_MAX)
        return -1;
    blob_put_be32(message, uint32_t(BLOB_WORD + size));
    if (size > 0)
        memcpy(message->data, data, size);
    blob_attr *found[2];
    if (blobmsg_parse(policy, 2, found, blob_data(message), unsigned(size)) == 0 && found[0])
        check(strlen(blobmsg_get_string(found[0])) < blobmsg_data_len(found[0]));
    int satisfaction;
    (void)mcagent_stats_parse_ap_stats(message, &satisfaction);
    (void)blobmsg_check_attr_list(message, BLOBMSG_TYPE_UNSPEC);
    free(blobmsg_format_json(message, true));
    free(message);
    return 0;
}
