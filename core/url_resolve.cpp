// SPDX-License-Identifier: MIT
#include "core/log.h"
#include "core/text.h"

#include <cerrno>
#include <cstring>
#include <memory>

namespace {

constexpr char log_tag[] = "libvexa";
constexpr uint32_t level_with_addresses = 16; // this one only
constexpr addrinfo ipv4_stream = [] {
    addrinfo hints{};
    hints.ai_family = AF_INET;
    hints.ai_socktype = SOCK_STREAM;
    return hints;
}();

struct free_addresses {
    void operator()(addrinfo *list) const noexcept { freeaddrinfo(list); }
};

// Keeps a record whose memory is released soon: nothing in the copy points into it.
int keep(url &u, const addrinfo &found)
{
    u.addr = found;
    u.addr.ai_addr = nullptr;
    u.addr.ai_canonname = nullptr;
    u.addr.ai_next = nullptr;
    if (found.ai_addrlen > sizeof u.sockaddr) {
        log_err_as("url_resolve", "Oversize sockaddr: %d vs %zd", int(found.ai_addrlen), sizeof u.sockaddr);
        return -ENOENT;
    }
    memcpy(&u.sockaddr, found.ai_addr, found.ai_addrlen);
    u.addr.ai_addr = &u.sockaddr.any;
    return 0;
}

} // namespace

extern "C" int url_resolve(url *u, const addrinfo *hints)
{
    if (!u)
        return -1;
    log_debug("url: %s", u->normalized);
    u->addr = {};
    u->sockaddr = {};
    char port[8];
    snprintf(port, sizeof port, "%u", u->port);
    addrinfo *found = nullptr;
    const int error = getaddrinfo(u->host, port, hints ? hints : &ipv4_stream, &found);
    if (error != 0) {
        log_debug("failed to resolve URL : %s", gai_strerror(error));
        return error;
    }
    const std::unique_ptr<addrinfo, free_addresses> list{found};
    if (libvexa_log_level == level_with_addresses)
        dump_addrinfo(found);
    int result = -ENXIO;
    for (const addrinfo *a = found; a; a = a->ai_next)
        if (a->ai_family == AF_INET || a->ai_family == AF_INET6)
            result = keep(*u, *a);
    return result;
}

extern "C" char *url_addr_ntop(const struct sockaddr *addr, char *buf, size_t size)
{
    const bool v6 = addr->sa_family == AF_INET6;
    const socklen_t length = v6 ? sizeof(sockaddr_in6) : sizeof(sockaddr_in);
    char host[INET6_ADDRSTRLEN + 16]; // with a zone
    char port[8];
    if ((!v6 && addr->sa_family != AF_INET) ||
        getnameinfo(addr, length, host, sizeof host, port, sizeof port, NI_NUMERICHOST | NI_NUMERICSERV) != 0)
        copy_text(buf, size, "");
    else
        snprintf(buf, size, v6 ? "[%s]:%s" : "%s:%s", host, port);
    return buf;
}

extern "C" void dump_addrinfo(const addrinfo *list)
{
    for (const addrinfo *a = list; a; a = a->ai_next) {
        char address[80] = "";
        if (a->ai_addr)
            url_addr_ntop(a->ai_addr, address, sizeof address);
        log_debug("%s family %d type %d protocol %d flags 0x%x", address, a->ai_family, a->ai_socktype, a->ai_protocol,
                  unsigned(a->ai_flags));
    }
}
