// SPDX-License-Identifier: MIT
#include "compat/ubus/message.h"

#include <algorithm>
#include <cerrno>
#include <climits>
#include <cstdlib>
#include <ctime>
#include <poll.h>
#include <sys/socket.h>
#include <sys/uio.h>

namespace {

constexpr size_t head_size = 8;
constexpr size_t first_size = head_size + BLOB_WORD;
constexpr size_t largest = 1 << 20;

bool is_whole(unsigned id, const blob_attr *part)
{
    const size_t length = blob_len(part);
    if (id == part_data)
        return true;
    if (id == part_object_path || id == part_method)
        return length > 0 && part->data[length - 1] == '\0';
    return length == 4;
}

void write_head(unsigned char *head, const message_header &header)
{
    head[0] = 0;
    head[1] = header.type;
    head[2] = static_cast<unsigned char>(header.seq >> 8);
    head[3] = static_cast<unsigned char>(header.seq);
    blob_put_be32(head + 4, header.peer);
}

void attach(msghdr &message, char *room, socklen_t size, int fd)
{
    message.msg_control = room;
    message.msg_controllen = size;
    cmsghdr *control = CMSG_FIRSTHDR(&message);
    control->cmsg_level = SOL_SOCKET;
    control->cmsg_type = SCM_RIGHTS;
    control->cmsg_len = CMSG_LEN(sizeof fd);
    memcpy(CMSG_DATA(control), &fd, sizeof fd);
}

void pass_over(iovec *pieces, size_t sent)
{
    for (size_t i = 0; i < 2; i++) {
        const size_t here = std::min(sent, pieces[i].iov_len);
        pieces[i].iov_base = static_cast<char *>(pieces[i].iov_base) + here;
        pieces[i].iov_len -= here;
        sent -= here;
    }
}

bool wait_writable(int fd)
{
    constexpr int patience_ms = 5000;
    pollfd wanted{fd, POLLOUT, 0};
    int ready;
    while ((ready = poll(&wanted, 1, patience_ms)) < 0 && errno == EINTR)
        ;
    return ready > 0;
}

} // namespace

message_parts::message_parts(const blob_attr *message)
{
    blob_attr *part;
    size_t left;
    blob_for_each_attr(part, message, left)
    {
        const unsigned id = blob_id(part);
        if (id < part_count && is_whole(id, part))
            of[id] = part;
    }
}

ubus_received::~ubus_received()
{
    free(body_);
}

arrival ubus_received::start_body()
{
    const size_t size = blob_pad_len(body_);
    if (head_[0] != 0 || size < BLOB_WORD || size > largest)
        return arrival::lost;
    if (size <= room_)
        return arrival::partial;
    void *grown = realloc(body_, size);
    if (!grown)
        return arrival::lost;
    body_ = static_cast<blob_attr *>(grown);
    room_ = size;
    return arrival::partial;
}

arrival ubus_received::take(int fd)
{
    if (!body_) {
        constexpr size_t first_room = 1024;
        body_ = static_cast<blob_attr *>(calloc(1, first_room));
        if (!body_)
            return arrival::lost;
        room_ = first_room;
    }
    for (;;) {
        const size_t size = count_ < first_size ? first_size : head_size + blob_pad_len(body_);
        if (count_ >= first_size && count_ == size)
            return arrival::whole;
        const size_t head_left = head_size - std::min(count_, head_size);
        const size_t body_count = count_ - (head_size - head_left);
        iovec pieces[] = {{head_ + head_size - head_left, head_left},
                          {reinterpret_cast<char *>(body_) + body_count, size - head_size - body_count}};
        const ssize_t got = readv(fd, pieces, 2);
        if (got < 0 && errno == EINTR)
            continue;
        if (got < 0 && errno == EAGAIN)
            return arrival::partial;
        if (got <= 0)
            return arrival::lost;
        const bool began = count_ < first_size;
        count_ += size_t(got);
        if (began && count_ == first_size && start_body() == arrival::lost)
            return arrival::lost;
    }
}

message_header ubus_received::header() const
{
    return {message_type(head_[1]), uint16_t(head_[2] << 8 | head_[3]), blob_get_be32(head_ + 4)};
}

int send_message(int fd, const message_header &header, const blob_attr *message, int passed_fd)
{
    unsigned char head[head_size];
    write_head(head, header);
    const size_t size = blob_pad_len(message);
    if (size > largest)
        return UBUS_STATUS_INVALID_ARGUMENT;
    iovec pieces[] = {{head, head_size}, {const_cast<blob_attr *>(message), size}};
    msghdr out{};
    out.msg_iov = pieces;
    out.msg_iovlen = 2;
    alignas(cmsghdr) char control[CMSG_SPACE(sizeof passed_fd)] = {};
    if (passed_fd >= 0)
        attach(out, control, sizeof control, passed_fd);
    while (pieces[0].iov_len + pieces[1].iov_len > 0) {
        const ssize_t sent = sendmsg(fd, &out, MSG_NOSIGNAL);
        if (sent >= 0) {
            pass_over(pieces, size_t(sent));
            out.msg_control = nullptr;
            out.msg_controllen = 0;
        } else if (errno != EINTR && (errno != EAGAIN || !wait_writable(fd))) {
            return UBUS_STATUS_INVALID_ARGUMENT;
        }
    }
    return UBUS_STATUS_OK;
}

int64_t now_ms()
{
    timespec now;
    clock_gettime(CLOCK_MONOTONIC, &now);
    return int64_t{now.tv_sec} * 1000 + now.tv_nsec / 1000000;
}

bool wait_readable(int fd, int64_t deadline)
{
    for (;;) {
        const int64_t left = deadline < 0 ? -1 : std::clamp<int64_t>(deadline - now_ms(), 0, INT_MAX);
        pollfd wanted{fd, POLLIN, 0};
        const int ready = poll(&wanted, 1, int(left));
        if (ready > 0)
            return true;
        if (ready == 0 || errno != EINTR)
            return false;
    }
}
