// SPDX-License-Identifier: MIT
#pragma once

#include "core/owner.h"

#include <cstdint>

// What both sides send, in the byte order of the machine.
struct webrtc_record {
    int32_t code;    // command of a request, status of a reply
    char body[1872]; // uuid, which may run on where nothing follows it; then data
};
constexpr size_t webrtc_uuid_size = 64;
constexpr size_t webrtc_data_size = sizeof(webrtc_record::body) - webrtc_uuid_size;

// Sends a request to the listener through a socket of its own. Holds nothing, logged for `func`, when that fails.
unique_fd send_webrtc_request(const char *func, const webrtc_record &request);

// Waits for a record, after which a shorter one is filled up with zeros. Returns false, with errno, without one.
bool receive_webrtc_record(const unique_fd &channel, int timeout_s, webrtc_record &record);
