// SPDX-License-Identifier: MIT
#include "messaging/send_piece.h"

#include "core/log.h"
#include "core/owner.h"
#include "messaging/wait.h"

#include <cstring>

namespace {

void log_refusal(const outlet &out)
{
    const char *log_tag = out.module;
    VEXA_LOG(out.error_gate, out.error_priority, out.func, "errno:%d/%s", errno, strerror(errno));
}

bool time_out(const outlet &out)
{
    const char *log_tag = out.module;
    log_warn_as(out.func, "Connection Timeout!");
    errno = ETIMEDOUT;
    return false;
}

// A datagram socket is ready for writing while the queue of the receiver is full.
void pause_briefly()
{
    constexpr timespec pause{0, 5'000'000};
    nanosleep(&pause, nullptr);
}

} // namespace

bool send_piece(const outlet &out, const void *data, size_t size)
{
    const char *log_tag = out.module;
    if (!can_wait_on(out.fd)) {
        log_err_as(out.func, "Invalid socketfd:%d", out.fd);
        return false;
    }
    const char *at = static_cast<const char *>(data);
    const char *const end = at + size;
    for (deadline limit{out.timeout_s}; at < end;) {
        const int ready = wait_until(out.fd, ready_for::writing, limit);
        if (ready == 0)
            return time_out(out);
        if (ready < 0) {
            if (errno == EINTR)
                continue;
            log_err_as(out.func, "Select return -1! errno:%d/%s", errno, strerror(errno));
            return false;
        }
        const ssize_t sent = sendto(out.fd, at, size_t(end - at), MSG_DONTWAIT | MSG_NOSIGNAL, out.addr, out.addrlen);
        if (sent > 0) {
            at += sent;
            limit = deadline{out.timeout_s};
        } else if (sent == 0) {
            log_refusal(out);
        } else if (errno != EAGAIN) {
            log_refusal(out);
            return false;
        } else if (limit.passed()) {
            return time_out(out);
        } else {
            pause_briefly();
        }
    }
    return true;
}
