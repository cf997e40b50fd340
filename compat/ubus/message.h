// SPDX-License-Identifier: MIT
#pragma once

extern "C" {
#include <libubus.h>
}

// A message: a header of version, type, 16-bit sequence number and 32-bit peer, big-endian, and one attribute whose
// children are its parts.

enum message_type : uint8_t { msg_hello = 0, msg_status = 1, msg_data = 2, msg_lookup = 4, msg_invoke = 5 };

enum message_part {
    part_status = 1,
    part_object_path = 2,
    part_object_id = 3,
    part_method = 4,
    part_data = 7,
    part_count
};

struct message_header {
    message_type type;
    uint16_t seq;
    uint32_t peer;
};

// The parts of a message by their id; one that is missing or misshapen is NULL, of two with one id the last counts.
struct message_parts {
    explicit message_parts(const blob_attr *message);
    const blob_attr *of[part_count] = {};
};

enum class arrival { whole, partial, lost };

// The message that is arriving: pieces gather here until it is whole.
struct ubus_received {
    ubus_received() = default;
    ubus_received(const ubus_received &) = delete;
    ubus_received &operator=(const ubus_received &) = delete;
    ~ubus_received();

    // Takes what the socket has, up to the end of this message. A header that cannot be counts as a lost connection:
    // nothing after it could be told apart.
    arrival take(int fd);
    void drop() { count_ = 0; }

    message_header header() const;
    const blob_attr *message() const { return body_; }

private:
    arrival start_body();

    unsigned char head_[8] = {};
    blob_attr *body_ = nullptr;
    size_t room_ = 0, count_ = 0;
};

// Sends the whole message, with a descriptor unless it is -1: 0 or a bus status.
int send_message(int fd, const message_header &header, const blob_attr *message, int passed_fd);

// Milliseconds of a clock that nobody sets.
int64_t now_ms();
// Whether the socket has something, or an end, before the time; without a deadline (-1) it waits for ever.
bool wait_readable(int fd, int64_t deadline);
