// SPDX-License-Identifier: MIT
#pragma once

#include "core/owner.h"

#include <cstdint>
#include <cstring>
#include <initializer_list>
#include <linux/rtnetlink.h>
#include <span>

// Requests to the routing part of the kernel, and the one walk over its answers. What arrives is copied out of the
// datagram after a check of every length. Failures are negated errno values.

unique_fd open_rtnetlink();

// Header, the block of its family, and at most one attribute.
class rtnetlink_request {
public:
    template <typename Block>
    rtnetlink_request(uint16_t type, uint16_t flags, const Block &block)
    {
        static_assert(NLMSG_SPACE(sizeof block) <= sizeof bytes_);
        begin(type, flags, &block, sizeof block);
    }

    template <typename Block, size_t size>
    rtnetlink_request(uint16_t type, uint16_t flags, const Block &block, uint16_t attribute,
                      const uint8_t (&value)[size])
    {
        static_assert(NLMSG_SPACE(sizeof block) + RTA_SPACE(size) <= sizeof bytes_);
        begin(type, flags, &block, sizeof block);
        add(attribute, value, size);
    }

    int send(int sock) const; // 0 or what send() failed with
    uint32_t sequence() const { return header_.nlmsg_seq; }

private:
    void begin(uint16_t type, uint16_t flags, const void *block, size_t size);
    void add(uint16_t attribute, const uint8_t *value, size_t size);

    nlmsghdr header_{}; // the first bytes once more, for reading
    uint8_t bytes_[64]{};
};

// Asks for everything of one kind (RTM_GETROUTE, ...) and address family.
rtnetlink_request dump_request(uint16_t type, uint8_t family);

struct rtnetlink_message {
    uint16_t type;
    std::span<const uint8_t> payload; // valid until the next message is taken

    // The block that the payload begins with, and the attributes behind it. False when it is cut.
    template <typename Block>
    bool split(Block &block, std::span<const uint8_t> &attributes) const
    {
        constexpr size_t size = NLMSG_ALIGN(sizeof block);
        if (payload.size() < sizeof block)
            return false;
        memcpy(&block, payload.data(), sizeof block);
        attributes = payload.size() > size ? payload.subspan(size) : payload.last(0);
        return true;
    }
};

// An attribute of four bytes, in the byte order it is sent in.
struct rtnetlink_number {
    uint16_t type;
    uint32_t *value; // untouched when the attribute is missing
};

// Picks attributes out. False when one is cut or has another size.
bool read_numbers(std::span<const uint8_t> attributes, std::initializer_list<rtnetlink_number> wanted);

// The messages that answer a request, from as many datagrams as it takes. Those of other senders and of other requests
// are passed over.
class rtnetlink_answer {
public:
    explicit rtnetlink_answer(const rtnetlink_request &request);

    // False at the end, and on the first failure.
    bool next(rtnetlink_message &message);

    // 0 once the answer was read to its end. A dump that the kernel interrupted is incomplete and a failure.
    int error() const { return ended_ ? error_ : -EINPROGRESS; }

private:
    bool receive();
    bool take(nlmsghdr &header, std::span<const uint8_t> &payload);
    static int result(uint16_t type, std::span<const uint8_t> payload);
    bool end(int error);

    unique_fd sock_;
    uint32_t sequence_;
    int error_ = 0;
    bool ended_ = false;
    std::span<const uint8_t> left_{}; // of the datagram
    uint8_t datagram_[8192];
};
