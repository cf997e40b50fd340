// SPDX-License-Identifier: MIT
#include "messaging/webrtc_channel.h"

#include "core/log.h"
#include "messaging/send_piece.h"
#include "messaging/wait.h"

#include <cstring>
#include <fcntl.h>
#include <sys/un.h>

static_assert(sizeof(webrtc_record) == 1876 && offsetof(webrtc_record, body) == 4);

namespace {

constexpr char log_tag[] = "libvexa_webrtc";
constexpr int send_timeout_s = 1;

// A name in the abstract namespace counts with all the zeros behind it.
sockaddr_un abstract_address(const char *name)
{
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    snprintf(address.sun_path + 1, sizeof address.sun_path - 1, "%s", name);
    return address;
}

unique_fd connect_to_listener()
{
    char name[sizeof "C_-2147483648_SSH"];
    snprintf(name, sizeof name, "C_%d_SSH", getpid());
    const sockaddr_un local = abstract_address(name), peer = abstract_address("IPC_WEBRTC_LISTENER");
    unique_fd fd{socket(AF_UNIX, SOCK_DGRAM | SOCK_CLOEXEC, 0)};
    if (!fd)
        perror("socket");
    else if (bind(fd.get(), reinterpret_cast<const sockaddr *>(&local), sizeof local) != 0)
        perror("bind");
    else if (connect(fd.get(), reinterpret_cast<const sockaddr *>(&peer), sizeof peer) != 0)
        perror("connect");
    else
        return fd;
    return unique_fd{};
}

void fcntl_setfl(int fd, int flags)
{
    if (fcntl(fd, F_SETFL, flags) < 0)
        log_err("flag:%x errno:%d/%s", unsigned(flags), errno, strerror(errno));
}

// A descriptor does not block while this lives. Sending does not depend on it: what cannot be set is only logged.
class nonblocking {
public:
    explicit nonblocking(int fd) : fd_{fd}, flags_{fcntl(fd, F_GETFL)} { fcntl_setfl(fd_, flags_ | O_NONBLOCK); }
    nonblocking(const nonblocking &) = delete;
    ~nonblocking()
    {
        const keep_errno kept;
        fcntl_setfl(fd_, flags_);
    }

private:
    int fd_, flags_;
};

bool send_record(int fd, const webrtc_record &request)
{
    const outlet out{fd, send_timeout_s, nullptr, 0, log_tag, "send_nonblocking", 1, LOG_ERR};
    const nonblocking for_now{fd};
    return send_piece(out, &request, sizeof request);
}

} // namespace

unique_fd send_webrtc_request(const char *func, const webrtc_record &request)
{
    unique_fd channel = connect_to_listener();
    if (!channel) {
        log_err_as(func, "Socket error");
        return channel;
    }
    if (!send_record(channel.get(), request)) {
        log_err_as(func, "Socket Timeout");
        channel.reset();
    }
    return channel;
}

// The request has gone through the same descriptor, so that a set of select() has a place for it.
bool receive_webrtc_record(const unique_fd &channel, int timeout_s, webrtc_record &record)
{
    record = {};
    const deadline limit{timeout_s};
    int ready;
    do {
        ready = wait_until(channel.get(), ready_for::reading, limit);
    } while (ready < 0 && errno == EINTR);
    if (ready == 0)
        errno = ETIMEDOUT;
    return ready > 0 && recv(channel.get(), &record, sizeof record, MSG_DONTWAIT) >= 0;
}
