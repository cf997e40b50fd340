// SPDX-License-Identifier: MIT
#include "core/log.h"
#include "core/owner.h"
#include "messaging/send_piece.h"
#include "messaging/wait.h"

#include <algorithm>
#include <cstring>

static_assert(offsetof(sk_msg, type) == 0 && offsetof(sk_msg, len) == 4 && offsetof(sk_msg, data) == 8);
static_assert(sizeof(sk_msg) == 8 + sizeof(void *));

namespace {

constexpr char log_tag[] = "sk_msg";
constexpr size_t header_size = 8;
constexpr int largest_piece = 16384;
constexpr int datagram_timeout_s = 3;
constexpr int preview = 20; // characters of a datagram's payload in the log

bool has_payload(const sk_msg &msg)
{
    const uint32_t held = msg.data ? msg.data->len(msg.data) : 0;
    return uint32_t(msg.len) <= held; // nor is any buffer as long as a negative number
}

const char *payload(const sk_msg &msg)
{
    return msg.data ? static_cast<const char *>(msg.data->head(msg.data)) : "";
}

bool send_payload(const outlet &out, const sk_msg &msg)
{
    const char *data = payload(msg);
    for (int sent = 0; sent < msg.len; sent += largest_piece)
        if (!send_piece(out, data + sent, size_t(std::min(msg.len - sent, largest_piece))))
            return false;
    return true;
}

// Where pieces come from.
struct inlet {
    int fd;
    int timeout_s;
    sockaddr *addr;
    socklen_t capacity;
    socklen_t *addrlen; // null for a stream
};

bool can_wait(const char *func, const inlet &in)
{
    if (!can_wait_on(in.fd))
        log_err_as(func, "Invalid socketfd:%d", in.fd);
    return can_wait_on(in.fd);
}

ssize_t stream_recv(const inlet &in, void *piece, size_t size)
{
    if (!can_wait("sk_msg_recv", in) || wait_until(in.fd, ready_for::reading, deadline{in.timeout_s}) <= 0)
        return -1;
    return recv(in.fd, piece, size, 0);
}

ssize_t req_recv(const inlet &in, void *piece, size_t size)
{
    if (!can_wait(__func__, in))
        return -1;
    const deadline limit{in.timeout_s};
    int ready;
    do {
        ready = wait_until(in.fd, ready_for::reading, limit);
    } while (ready < 0 && errno == EINTR);
    if (ready == 0) {
        log_warn("Select() timeout fd %d", in.fd);
        return -1;
    }
    if (ready < 0) {
        log_err("Select() error from fd %derrno:%d/%s", in.fd, errno, strerror(errno));
        return -1;
    }
    ssize_t got;
    do {
        *in.addrlen = in.capacity;
        got = recvfrom(in.fd, piece, size, 0, in.addr, in.addrlen);
    } while (got < 0 && errno == EINTR);
    return got;
}

int receive(const char *func, const inlet &in, ssize_t (*receive_piece)(const inlet &, void *, size_t), sk_msg &msg)
{
    msg.type = msg.len = 0;
    if (receive_piece(in, &msg, header_size) < 0)
        return -1;
    log_debug_as(func, "Recv header type:%d, len:%d", msg.type, msg.len);
    if (msg.len < 0)
        return -1;
    int total = 0;
    while (total < msg.len) {
        const int size = std::min(msg.len - total, largest_piece);
        // a whole piece is appended, however little arrives: the rest of it stays zero
        void *piece = msg.data ? msg.data->alloc_zeroed(msg.data, size_t(size)) : nullptr;
        if (!piece)
            return -1;
        if (receive_piece(in, piece, size_t(size)) < 0) {
            buffer_pop(msg.data, size);
            return -1;
        }
        total += size;
    }
    const int held = msg.data ? int(msg.data->len(msg.data)) : 0;
    log_debug_as(func, "total_recv:%d, buffer_sz:%d", total, held);
    if (!libvexa_log_use_syslog)
        log_verbose_as(func, "Data:%.*s", held, payload(msg));
    return total;
}

} // namespace

extern "C" int sk_msg_send(int fd, sk_msg *msg, int timeout_s)
{
    if (!msg || fd < 0 || !has_payload(*msg)) {
        log_err("Invalid parameter");
        return -1;
    }
    const outlet out{fd, timeout_s, nullptr, 0, log_tag, "send_nonblocking", 1, LOG_ERR};
    log_debug("Send type:%d, len:%d, data:%.*s", msg->type, msg->len, msg->len, payload(*msg));
    return send_piece(out, msg, header_size) && send_payload(out, *msg) ? msg->len : -1;
}

extern "C" int sk_msg_sendto(int fd, sk_msg *msg, const struct sockaddr *addr, socklen_t addrlen)
{
    if (!msg || fd < 0 || !addr || !has_payload(*msg)) {
        log_err("Invalid parameter");
        return -1;
    }
    const outlet out{fd, datagram_timeout_s, addr, addrlen, log_tag, "sendto_nonblocking", 8, LOG_DEBUG};
    if (!send_piece(out, msg, header_size))
        return -1;
    log_debug("Send type:%d, len:%d, data:%.*s...", msg->type, msg->len, std::min(msg->len, preview), payload(*msg));
    return send_payload(out, *msg) ? msg->len : -1;
}

extern "C" int sk_msg_recv(int fd, sk_msg *msg, int timeout_s)
{
    if (!msg || fd < 0) {
        log_err("Invalid parameter");
        return -1;
    }
    return receive(__func__, {fd, timeout_s, nullptr, 0, nullptr}, stream_recv, *msg);
}

extern "C" int sk_msg_recvfrom(int fd, sk_msg *msg, struct sockaddr *addr, socklen_t *addrlen)
{
    if (!msg || fd < 0 || !addr || !addrlen) {
        log_err("Invalid parameter");
        return -1;
    }
    return receive(__func__, {fd, datagram_timeout_s, addr, *addrlen, addrlen}, req_recv, *msg);
}
