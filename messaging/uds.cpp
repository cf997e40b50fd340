// SPDX-License-Identifier: MIT
#include "core/log.h"
#include "core/owner.h"

#include <cstring>

static_assert(sizeof(sockaddr_un) == 110 && sizeof(uds_sock) == 224);
static_assert(offsetof(uds_sock, local) == 4 && offsetof(uds_sock, peer) == 114);

namespace {

constexpr char log_tag[] = "uds";
constexpr size_t longest_path = sizeof(sockaddr_un::sun_path);
constexpr uds_sock none{-1, {}, {}};

// A path of the full length has no zero behind it.
bool set_address(sockaddr_un &address, const char *path)
{
    const size_t length = strlen(path);
    if (length > longest_path) {
        errno = ENAMETOOLONG;
        return false;
    }
    address.sun_family = AF_UNIX;
    memcpy(address.sun_path, path, length);
    return true;
}

socklen_t address_length(const sockaddr_un &address)
{
    return socklen_t(offsetof(sockaddr_un, sun_path) + strnlen(address.sun_path, longest_path));
}

const sockaddr *generic(const sockaddr_un &address)
{
    return reinterpret_cast<const sockaddr *>(&address);
}

bool bind_file(int fd, const char *path, sockaddr_un &local)
{
    if (!set_address(local, path))
        return false;
    (void)unlink(path); // left by an earlier server
    if (bind(fd, generic(local), address_length(local)) == 0)
        return true;
    const keep_errno kept;
    (void)unlink(path);
    return false;
}

bool connect_to(int fd, const char *path, sockaddr_un &peer)
{
    return set_address(peer, path) && connect(fd, generic(peer), address_length(peer)) == 0;
}

// The whole record, or none.
uds_sock open_endpoint(const char *func, const char *path, bool server)
{
    unique_fd fd{socket(AF_UNIX, SOCK_DGRAM | SOCK_CLOEXEC, 0)};
    if (!fd) {
        log_err_as(func, "uds socket error, errno:%d/%s", errno, strerror(errno));
        return none;
    }
    char client_path[longest_path];
    if (!server)
        snprintf(client_path, sizeof client_path, "/var/run/uds_client-%d-%d", getpid(), rand() & 0xffff);
    const char *local_path = server ? path : client_path;
    uds_sock made = none;
    if (!bind_file(fd.get(), local_path, made.local)) {
        log_err_as(func, "bind error, path:%s, errno:%d/%s", local_path, errno, strerror(errno));
        return none;
    }
    if (!server && !connect_to(fd.get(), path, made.peer)) {
        log_err_as(func, "connect error, path:%s, errno:%d/%s", path, errno, strerror(errno));
        (void)unlink(local_path);
        return none;
    }
    made.fd = fd.release();
    return made;
}

} // namespace

extern "C" int uds_socket_create(const char *path, uds_sock *s, int server)
{
    uds_sock made = none;
    if (path && s)
        made = open_endpoint(__func__, path, server != 0);
    else
        log_err("invalid parameter");
    if (s)
        *s = made;
    return made.fd;
}

extern "C" int uds_sock_open_server(const char *path, uds_sock *s)
{
    return uds_socket_create(path, s, 1);
}

extern "C" int uds_sock_open_client(const char *path, uds_sock *s)
{
    return uds_socket_create(path, s, 0);
}

extern "C" int uds_get_sock(const uds_sock *s)
{
    return s ? s->fd : -1;
}

extern "C" void uds_sock_close(uds_sock *s)
{
    if (!s)
        return;
    char path[longest_path + 1];
    snprintf(path, sizeof path, "%.*s", int(longest_path), s->local.sun_path);
    if (*path)
        (void)unlink(path);
    const unique_fd fd{s->fd};
}
