// SPDX-License-Identifier: MIT
#include "core/ifreq.h"
#include "core/log.h"

#include <arpa/inet.h>
#include <netinet/in.h>

namespace {

constexpr char log_tag[] = "libvexa_util";

bool opened(const interface_request<> &request, const char *func)
{
    if (!request.sock)
        log_err_as(func, "unable to open sock");
    return bool(request.sock);
}

} // namespace

extern "C" int set_iface_ip(const char *ifname, const char *ipv4_text)
{
    interface_request request{ifname};
    if (!opened(request, __func__))
        return -1;
    sockaddr_in address{};
    address.sin_family = AF_INET;
    in_addr parsed;
    const int result = inet_pton(AF_INET, ipv4_text, &parsed);
    if (result < 0) {
        log_err("inet_pton failed");
        return -1;
    }
    if (result > 0) // what is no address goes out as 0.0.0.0
        address.sin_addr = parsed;
    memcpy(&request.block.ifr_addr, &address, sizeof address);
    if (!request.issue(SIOCSIFADDR)) {
        log_err("ioctl SIOCSIFADDR failed");
        return -1;
    }
    return 0;
}

extern "C" int get_iface_ip(const char *ifname, uint32_t *addr)
{
    interface_request request{ifname};
    if (!opened(request, __func__))
        return -1;
    if (!request.issue(SIOCGIFADDR)) {
        log_debug("ioctl SIOCGIFADDR failed");
        return -1;
    }
    sockaddr_in address;
    memcpy(&address, &request.block.ifr_addr, sizeof address);
    *addr = address.sin_addr.s_addr;
    return 0;
}

extern "C" int get_iface_index(const char *ifname, uint32_t *index)
{
    interface_request request{ifname};
    if (!opened(request, __func__))
        return -1;
    if (!request.issue(SIOCGIFINDEX)) {
        log_err("ioctl SIOCGIFINDEX failed");
        return -1;
    }
    *index = uint32_t(request.block.ifr_ifindex);
    return 0;
}

extern "C" int iface_is_up(const char *ifname)
{
    interface_request request{ifname};
    if (!opened(request, __func__))
        return 0;
    if (!request.issue(SIOCGIFFLAGS)) {
        log_err("ioctl SIOCGIFFLAGS failed on %s", ifname);
        return 0;
    }
    return (request.block.ifr_flags & IFF_UP) != 0;
}

extern "C" int is_ppp_dev(const char *ifname)
{
    return strncmp(ifname, "ppp", 3) == 0;
}
