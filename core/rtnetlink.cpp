// SPDX-License-Identifier: MIT
#include "core/rtnetlink.h"

#include <algorithm>
#include <ctime>
#include <sys/socket.h>

namespace {

using bytes_view = std::span<const uint8_t>;

// What stays behind a piece that is followed by padding; the last piece may lack it.
bytes_view behind(bytes_view bytes, size_t padded)
{
    return bytes.subspan(std::min(padded, bytes.size()));
}

} // namespace

unique_fd open_rtnetlink()
{
    return unique_fd{socket(AF_NETLINK, SOCK_RAW | SOCK_CLOEXEC, NETLINK_ROUTE)};
}

void rtnetlink_request::begin(uint16_t type, uint16_t flags, const void *block, size_t size)
{
    header_.nlmsg_len = uint32_t(NLMSG_LENGTH(size));
    header_.nlmsg_type = type;
    header_.nlmsg_flags = uint16_t(NLM_F_REQUEST | flags);
    header_.nlmsg_seq = uint32_t(time(nullptr));
    header_.nlmsg_pid = uint32_t(getpid());
    memcpy(bytes_, &header_, sizeof header_);
    memcpy(bytes_ + NLMSG_HDRLEN, block, size);
}

void rtnetlink_request::add(uint16_t attribute, const uint8_t *value, size_t size)
{
    const rtattr head{.rta_len = uint16_t(RTA_LENGTH(size)), .rta_type = attribute};
    uint8_t *at = bytes_ + NLMSG_ALIGN(header_.nlmsg_len);
    memcpy(at, &head, sizeof head);
    memcpy(at + RTA_LENGTH(0), value, size);
    header_.nlmsg_len = uint32_t(NLMSG_ALIGN(header_.nlmsg_len) + RTA_LENGTH(size));
    memcpy(bytes_, &header_, sizeof header_);
}

int rtnetlink_request::send(int sock) const
{
    return ::send(sock, bytes_, header_.nlmsg_len, MSG_NOSIGNAL) < 0 ? -errno : 0; // unconnected: the kernel
}

rtnetlink_request dump_request(uint16_t type, uint8_t family)
{
    const rtgenmsg block{.rtgen_family = family};
    return {type, NLM_F_DUMP, block};
}

bool read_numbers(bytes_view attributes, std::initializer_list<rtnetlink_number> wanted)
{
    while (!attributes.empty()) {
        rtattr head;
        if (attributes.size() < sizeof head)
            return false;
        memcpy(&head, attributes.data(), sizeof head);
        if (head.rta_len < RTA_LENGTH(0) || head.rta_len > attributes.size())
            return false;
        for (const rtnetlink_number &number : wanted) {
            if (number.type != head.rta_type)
                continue;
            if (head.rta_len != RTA_LENGTH(sizeof *number.value))
                return false;
            memcpy(number.value, attributes.data() + RTA_LENGTH(0), sizeof *number.value);
        }
        attributes = behind(attributes, RTA_ALIGN(head.rta_len));
    }
    return true;
}

rtnetlink_answer::rtnetlink_answer(const rtnetlink_request &request)
    : sock_{open_rtnetlink()}, sequence_{request.sequence()}
{
    const int result = sock_ ? request.send(sock_.get()) : -errno;
    if (result != 0)
        end(result);
}

bool rtnetlink_answer::next(rtnetlink_message &message)
{
    while (!ended_) {
        nlmsghdr header;
        bytes_view payload;
        if (left_.empty() && !receive())
            return false;
        if (!take(header, payload))
            return end(-EBADMSG);
        if (header.nlmsg_seq != sequence_ || header.nlmsg_type == NLMSG_NOOP)
            continue;
        if (header.nlmsg_flags & NLM_F_DUMP_INTR)
            return end(-EINTR);
        if (header.nlmsg_type < NLMSG_MIN_TYPE)
            return end(result(header.nlmsg_type, payload));
        ended_ = !(header.nlmsg_flags & NLM_F_MULTI);
        message = {header.nlmsg_type, payload};
        return true;
    }
    return false;
}

// The next datagram that the kernel sent.
bool rtnetlink_answer::receive()
{
    sockaddr_nl sender;
    iovec room{datagram_, sizeof datagram_};
    msghdr head;
    ssize_t size;
    do {
        sender = {};
        head = {};
        head.msg_name = &sender;
        head.msg_namelen = sizeof sender;
        head.msg_iov = &room;
        head.msg_iovlen = 1;
        size = recvmsg(sock_.get(), &head, 0);
    } while (size < 0 ? errno == EINTR : sender.nl_pid != 0);
    if (size < 0)
        return end(-errno);
    if (head.msg_flags & MSG_TRUNC)
        return end(-EMSGSIZE);
    left_ = {datagram_, size_t(size)};
    return true;
}

// Takes a message off the datagram; false when it is cut.
bool rtnetlink_answer::take(nlmsghdr &header, bytes_view &payload)
{
    if (left_.size() < sizeof header)
        return false;
    memcpy(&header, left_.data(), sizeof header);
    if (header.nlmsg_len < NLMSG_HDRLEN || header.nlmsg_len > left_.size())
        return false;
    payload = left_.subspan(NLMSG_HDRLEN, header.nlmsg_len - NLMSG_HDRLEN);
    left_ = behind(left_, NLMSG_ALIGN(header.nlmsg_len));
    return true;
}

// The end of a dump may carry a negated errno; an error must carry one, or 0 when the request is only confirmed.
int rtnetlink_answer::result(uint16_t type, bytes_view payload)
{
    int32_t code = type == NLMSG_DONE ? 0 : -EBADMSG;
    if ((type == NLMSG_DONE || type == NLMSG_ERROR) && payload.size() >= sizeof code)
        memcpy(&code, payload.data(), sizeof code);
    return std::min(code, 0);
}

bool rtnetlink_answer::end(int error)
{
    ended_ = true;
    error_ = error;
    return false;
}
