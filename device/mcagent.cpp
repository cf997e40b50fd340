// SPDX-License-Identifier: MIT
#include "core/log.h"

#include <charconv>
#include <cstring>
extern "C" {
#include <libubox/blobmsg.h>
}
#include <libvexa.h>

namespace {

constexpr char log_tag[] = "ubus_mcagent_stats";
constexpr blobmsg_policy policy[] = {{"satisfaction", BLOBMSG_TYPE_UNSPEC}};

bool to_number(const blob_attr *field, int64_t &number)
{
    const int type = blobmsg_type(field);
    if (type == BLOBMSG_TYPE_STRING) {
        const char *text = blobmsg_get_string(const_cast<blob_attr *>(field));
        const char *end = text + strlen(text);
        const auto [stop, wrong] = std::from_chars(text, end, number);
        return wrong == std::errc{} && stop == end;
    }
    number = blobmsg_cast_s64(const_cast<blob_attr *>(field));
    return type >= BLOBMSG_TYPE_INT64 && type <= BLOBMSG_TYPE_INT8;
}

} // namespace

extern "C" int mcagent_stats_parse_ap_stats(blob_attr *msg, int *satisfaction)
{
    blob_attr *found[1] = {};
    if (msg && blob_len(msg) > 0 && blobmsg_parse(policy, 1, found, blob_data(msg), unsigned(blob_len(msg))) != 0) {
        log_err("Failed to parse satisfaction");
        return -1;
    }
    if (!found[0]) {
        log_err("Satisfaction is NULL");
        return -1;
    }
    int64_t number;
    if (!to_number(found[0], number) || number < -1 || number > 100) {
        log_err("Failed to parse satisfaction");
        return -1;
    }
    *satisfaction = int(number);
    return 0;
}
