/* SPDX-License-Identifier: MIT */
/*
 * The bus client's interface as the platform's package has it, as far as libvexa uses it: for builds on machines that
 * lack the package. Nothing here is thread-safe.
 */
#ifndef VEXA_COMPAT_LIBUBUS_H
#define VEXA_COMPAT_LIBUBUS_H

#ifdef __cplusplus
extern "C" {
#endif

#include "libubox/blob.h"
#include "libubox/blobmsg.h"

enum { ULOOP_READ = 1 };

enum ubus_msg_status {
    UBUS_STATUS_OK,
    UBUS_STATUS_INVALID_COMMAND,
    UBUS_STATUS_INVALID_ARGUMENT,
    UBUS_STATUS_METHOD_NOT_FOUND,
    UBUS_STATUS_NOT_FOUND,
    UBUS_STATUS_NO_DATA,
    UBUS_STATUS_PERMISSION_DENIED,
    UBUS_STATUS_TIMEOUT,
    UBUS_STATUS_NOT_SUPPORTED,
    UBUS_STATUS_UNKNOWN_ERROR,
    UBUS_STATUS_CONNECTION_FAILED,
    UBUS_STATUS_NO_MEMORY,
    UBUS_STATUS_PARSE_ERROR,
    UBUS_STATUS_SYSTEM_ERROR
};

struct ubus_context;
struct ubus_request;
struct ubus_received; /* the message being received */

struct uloop_fd {
    void (*cb)(struct uloop_fd *sock, unsigned events);
    int fd;
    bool eof;
};

typedef void (*ubus_data_handler_t)(struct ubus_request *req, int type, struct blob_attr *msg);

/* A call that waits for its answer. */
struct ubus_request {
    struct ubus_request *outer; /* the call from whose callback this one was made */
    int status;
    bool done;
    uint16_t seq;
    uint32_t peer;
    ubus_data_handler_t data_cb;                                                  /* gets the DATA attribute */
    void (*answer_cb)(struct ubus_request *req, const struct blob_attr *message); /* gets the whole answer */
    struct ubus_context *ctx;
    void *priv;
};

struct ubus_context {
    struct uloop_fd sock;
    uint32_t local_id; /* in wire byte order */
    uint16_t request_seq;
    void (*connection_lost)(struct ubus_context *ctx);
    struct ubus_request *waiting;
    struct ubus_received *received;
};

struct ubus_context *ubus_connect(const char *path);
int ubus_reconnect(struct ubus_context *ctx, const char *path);
void ubus_free(struct ubus_context *ctx);
int ubus_lookup_id(struct ubus_context *ctx, const char *path, uint32_t *id);
int ubus_invoke_fd(struct ubus_context *ctx, uint32_t obj, const char *method, struct blob_attr *msg,
                   ubus_data_handler_t cb, void *priv, int timeout, int fd);
const char *ubus_strerror(int error);

static inline int ubus_invoke(struct ubus_context *ctx, uint32_t obj, const char *method, struct blob_attr *msg,
                              ubus_data_handler_t cb, void *priv, int timeout)
{
    return ubus_invoke_fd(ctx, obj, method, msg, cb, priv, timeout, -1);
}

static inline void ubus_handle_event(struct ubus_context *ctx)
{
    ctx->sock.cb(&ctx->sock, ULOOP_READ);
}

#ifdef __cplusplus
}
#endif

#endif
