// SPDX-License-Identifier: MIT
#include "compat/ubus/message.h"

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <fcntl.h>
#include <new>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

namespace {

// A broker greets and looks up at once; one that does not must not hold up a daemon for ever.
constexpr int patience_ms = 5000;

struct message_buffer : blob_buf {
    message_buffer() : blob_buf{} { ready = blob_buf_init(this, 0) == 0; }
    message_buffer(const message_buffer &) = delete;
    message_buffer &operator=(const message_buffer &) = delete;
    ~message_buffer() { blob_buf_free(this); }

    void add(message_part part, const void *data, size_t length)
    {
        ready = ready && blob_put(this, part, data, length);
    }
    void add(message_part part, const char *text) { add(part, text, strlen(text) + 1); }
    void add(message_part part, uint32_t number)
    {
        char bytes[4];
        blob_put_be32(bytes, number);
        add(part, bytes, sizeof bytes);
    }

    bool ready;
};

void close_socket(ubus_context *ctx)
{
    if (ctx->sock.fd >= 0)
        (void)close(ctx->sock.fd);
    ctx->sock.fd = -1;
    ctx->received->drop();
}

// A fresh connected socket, or -1.
int connect_to(const char *path)
{
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    const size_t length = strlen(path);
    if (length >= sizeof address.sun_path)
        return -1;
    memcpy(address.sun_path, path, length);
    const int fd = socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
    if (fd < 0)
        return -1;
    if (connect(fd, reinterpret_cast<const sockaddr *>(&address), sizeof address) != 0 ||
        fcntl(fd, F_SETFL, O_NONBLOCK) != 0) {
        (void)close(fd);
        return -1;
    }
    return fd;
}

bool read_greeting(ubus_context *ctx)
{
    const int64_t deadline = now_ms() + patience_ms;
    arrival state;
    while ((state = ctx->received->take(ctx->sock.fd)) == arrival::partial)
        if (!wait_readable(ctx->sock.fd, deadline))
            return false;
    if (state == arrival::lost || ctx->received->header().type != msg_hello)
        return false;
    blob_put_be32(&ctx->local_id, ctx->received->header().peer);
    ctx->received->drop();
    return true;
}

ubus_request *waiting_for(ubus_context *ctx, const message_header &header)
{
    ubus_request *request = ctx->waiting;
    while (request && (request->seq != header.seq || request->peer != header.peer))
        request = request->outer;
    return request && !request->done ? request : nullptr;
}

// The message's bytes stay in place until the next is taken; a callback that makes a call of its own takes the next.
void dispatch(ubus_context *ctx)
{
    const message_header header = ctx->received->header();
    const message_parts parts{ctx->received->message()};
    ctx->received->drop();
    ubus_request *request = waiting_for(ctx, header);
    if (!request)
        return;
    if (header.type == msg_status) {
        request->status =
            parts.of[part_status] ? int(blob_get_u32(parts.of[part_status])) : UBUS_STATUS_INVALID_ARGUMENT;
        request->done = true;
    } else if (header.type == msg_data && request->answer_cb) {
        request->answer_cb(request, ctx->received->message());
    } else if (header.type == msg_data && request->data_cb && parts.of[part_data]) {
        request->data_cb(request, msg_data, const_cast<blob_attr *>(parts.of[part_data]));
    }
}

void lose(ubus_context *ctx)
{
    ctx->sock.eof = true;
    if (ctx->connection_lost)
        ctx->connection_lost(ctx);
}

void handle_readable(uloop_fd *sock, unsigned)
{
    auto *ctx = reinterpret_cast<ubus_context *>(sock);
    if (sock->fd < 0)
        return lose(ctx);
    for (arrival state; (state = ctx->received->take(sock->fd)) != arrival::partial;) {
        if (state == arrival::lost)
            return lose(ctx);
        dispatch(ctx);
    }
}

int wait_for(ubus_context *ctx, ubus_request &request, int64_t deadline)
{
    while (!request.done) {
        const arrival state = ctx->received->take(ctx->sock.fd);
        if (state == arrival::whole) {
            dispatch(ctx);
        } else if (state == arrival::lost) {
            lose(ctx);
            return ctx->sock.eof ? UBUS_STATUS_CONNECTION_FAILED : UBUS_STATUS_TIMEOUT;
        } else if (!wait_readable(ctx->sock.fd, deadline)) {
            return UBUS_STATUS_TIMEOUT;
        }
    }
    return request.status;
}

int call(ubus_context *ctx, message_type type, ubus_request &request, const message_buffer &message, int timeout,
         int passed_fd = -1)
{
    if (!message.ready)
        return UBUS_STATUS_NO_MEMORY;
    request.seq = ++ctx->request_seq;
    request.ctx = ctx;
    if (const int status = send_message(ctx->sock.fd, {type, request.seq, request.peer}, message.head, passed_fd))
        return status;
    if (timeout < 0)
        return UBUS_STATUS_TIMEOUT;
    request.outer = ctx->waiting;
    ctx->waiting = &request;
    const int status = wait_for(ctx, request, timeout == 0 ? -1 : now_ms() + timeout);
    ctx->waiting = request.outer;
    return status;
}

void keep_object_id(ubus_request *request, const blob_attr *message)
{
    const message_parts parts{message};
    if (parts.of[part_object_id])
        *static_cast<uint32_t *>(request->priv) = blob_get_u32(parts.of[part_object_id]);
}

} // namespace

extern "C" int ubus_reconnect(ubus_context *ctx, const char *path)
{
    close_socket(ctx);
    ctx->sock.eof = true;
    ctx->sock.fd = connect_to(path);
    if (ctx->sock.fd < 0)
        return UBUS_STATUS_CONNECTION_FAILED;
    if (!read_greeting(ctx)) {
        close_socket(ctx);
        return UBUS_STATUS_UNKNOWN_ERROR;
    }
    ctx->sock.eof = false;
    return UBUS_STATUS_OK;
}

extern "C" ubus_context *ubus_connect(const char *path)
{
    static_assert(offsetof(ubus_context, sock) == 0); // handle_readable() gets the context by its socket
    auto *ctx = static_cast<ubus_context *>(calloc(1, sizeof(ubus_context) + sizeof(ubus_received)));
    if (!ctx)
        return nullptr;
    ctx->sock = {handle_readable, -1, false};
    ctx->received = new (ctx + 1) ubus_received;
    if (ubus_reconnect(ctx, path) == UBUS_STATUS_OK)
        return ctx;
    ubus_free(ctx);
    return nullptr;
}

extern "C" void ubus_free(ubus_context *ctx)
{
    if (!ctx)
        return;
    close_socket(ctx);
    ctx->received->~ubus_received();
    free(ctx);
}

extern "C" int ubus_lookup_id(ubus_context *ctx, const char *path, uint32_t *id)
{
    message_buffer message;
    message.add(part_object_path, path);
    ubus_request request{};
    request.answer_cb = keep_object_id;
    request.priv = id;
    return call(ctx, msg_lookup, request, message, patience_ms);
}

extern "C" int ubus_invoke_fd(ubus_context *ctx, uint32_t obj, const char *method, blob_attr *msg,
                              ubus_data_handler_t cb, void *priv, int timeout, int fd)
{
    message_buffer message;
    message.add(part_object_id, obj);
    message.add(part_method, method);
    message.add(part_data, msg ? blob_data(msg) : nullptr, msg ? blob_len(msg) : 0);
    ubus_request request{};
    request.peer = obj;
    request.data_cb = cb;
    request.priv = priv;
    const int status = call(ctx, msg_invoke, request, message, timeout, fd);
    if (fd >= 0)
        (void)close(fd);
    return status;
}
