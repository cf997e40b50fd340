// SPDX-License-Identifier: MIT
#include "core/log.h"
#include "messaging/discovery.h"

#include <cstring>

namespace {

constexpr char log_tag[] = "vexa_protocol";
constexpr uint8_t time_to_live = 64;
constexpr uint8_t loop_back = 0;
constexpr int on = 1;

ip_mreq membership; // last added, and dropped again

template <typename T>
bool set_option(int fd, int level, int option, const T &value)
{
    return setsockopt(fd, level, option, &value, sizeof value) == 0;
}

bool bind_to_port(int fd)
{
    const sockaddr_in any = discovery_address({INADDR_ANY});
    return bind(fd, reinterpret_cast<const sockaddr *>(&any), sizeof any) == 0;
}

} // namespace

sockaddr_in discovery_address(in_addr address)
{
    sockaddr_in out{};
    out.sin_family = AF_INET;
    out.sin_port = htons(discovery_port);
    out.sin_addr = address;
    return out;
}

bool open_listener(const char *func)
{
    const int fd = vexa_protocol_ctrl.sock = socket(AF_INET, SOCK_DGRAM | SOCK_CLOEXEC, 0);
    if (fd < 0)
        log_err_as(func, "unable to create udp socket, %s", strerror(errno));
    else if (!set_option(fd, SOL_SOCKET, SO_REUSEADDR, on))
        log_err_as(func, "unable to set sockopt reuseaddr socket, %s", strerror(errno));
    else if (!set_option(fd, SOL_SOCKET, SO_BROADCAST, on))
        log_err_as(func, "can't set socket broadcast");
    else if (!bind_to_port(fd))
        log_err_as(func, "unable to bind vexa socket, %s", strerror(errno));
    else
        return true;
    return false;
}

int vexa_multicast_socket_init()
{
    const int fd = vexa_protocol_ctrl.sock;
    if (!set_option(fd, IPPROTO_IP, IP_MULTICAST_IF, vexa_protocol_ctrl.my_ip)) {
        log_err("unable to set mcast local ip, %s", strerror(errno));
        return -1;
    }
    if (!set_option(fd, IPPROTO_IP, IP_MULTICAST_TTL, time_to_live)) {
        log_err("unable to set mcast ttl, %s", strerror(errno));
        return -ENOENT;
    }
    if (!set_option(fd, IPPROTO_IP, IP_MULTICAST_LOOP, loop_back)) {
        log_err("unable to set mcast loop, %s", strerror(errno));
        return -ESRCH;
    }
    membership = {vexa_protocol_ctrl.mcast_ip, vexa_protocol_ctrl.my_ip};
    if (!set_option(fd, IPPROTO_IP, IP_ADD_MEMBERSHIP, membership)) {
        log_err("unable to add membership, %s", strerror(errno));
        return -EINTR;
    }
    return 0;
}

void vexa_multicast_socket_deinit()
{
    membership.imr_interface.s_addr = INADDR_ANY;
    if (!set_option(vexa_protocol_ctrl.sock, IPPROTO_IP, IP_DROP_MEMBERSHIP, membership))
        log_err("unable to drop membership, %s", strerror(errno));
}

unique_fd vexa_protocol_client_sock_init()
{
    unique_fd fd{socket(AF_INET, SOCK_DGRAM | SOCK_CLOEXEC, 0)};
    if (!fd)
        log_err("lcm event socket error, errno:%d/%s", errno, strerror(errno));
    else if (!set_option(fd.get(), SOL_SOCKET, SO_REUSEADDR, on))
        log_err("can't set sockopt reuseaddr, errno:%d/%s", errno, strerror(errno));
    else if (!set_option(fd.get(), IPPROTO_IP, IP_MULTICAST_IF, in_addr{INADDR_ANY}))
        log_err("unable to set mcast local ip, errno:%d/%s", errno, strerror(errno));
    else if (!set_option(fd.get(), IPPROTO_IP, IP_MULTICAST_TTL, time_to_live))
        log_err("unable to set mcast ttl, errno:%d/%s", errno, strerror(errno));
    else if (!set_option(fd.get(), IPPROTO_IP, IP_MULTICAST_LOOP, loop_back))
        log_err("unable to set mcast loop, errno:%d/%s", errno, strerror(errno));
    else if (!bind_to_port(fd.get()))
        log_err("unable to bind sock, errno:%d/%s", errno, strerror(errno));
    else
        return fd;
    return unique_fd{};
}
