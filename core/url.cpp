// SPDX-License-Identifier: MIT
#include "core/url.h"

#include "core/ascii.h"

#include <cstdlib>
#include <cstring>
#include <utility>

static_assert(offsetof(url, normalized) == 0 && offsetof(url, original) == sizeof(char *));
static_assert(offsetof(url, scheme) == 2 * sizeof(char *) && offsetof(url, userinfo) == 3 * sizeof(char *));
static_assert(offsetof(url, host) == 4 * sizeof(char *) && offsetof(url, port) == 5 * sizeof(char *));
static_assert(offsetof(url, path) == 6 * sizeof(char *) && offsetof(url, is_https) == 7 * sizeof(char *));
static_assert(offsetof(url, is_ipv6) == offsetof(url, is_https) + 4 && sizeof(url::sockaddr) == 28);
static_assert(offsetof(url, addr) == offsetof(url, is_ipv6) + 4);
static_assert(offsetof(url, sockaddr) == offsetof(url, addr) + sizeof(addrinfo));

namespace {

constexpr url_scheme schemes[] = {{"http", 80}, {"https", 443}, {"stun", 3478}, {"ws", 80}, {"wss", 443}};

bool copy_member(char *&copy, const char *text)
{
    copy = text ? strdup(text) : nullptr;
    return copy || !text;
}

} // namespace

const url_scheme *find_url_scheme(std::string_view name)
{
    for (const url_scheme &scheme : schemes)
        if (equal_without_case(scheme.name, name))
            return &scheme;
    return nullptr;
}

extern "C" int url_scheme2port(const char *scheme, uint16_t *port)
{
    const url_scheme *found = scheme ? find_url_scheme({scheme, strlen(scheme)}) : nullptr;
    if (!found)
        return -1;
    if (port)
        *port = found->port;
    return 0;
}

extern "C" void url_destroy(url *u)
{
    if (!u)
        return;
    for (char *text : {u->normalized, u->original, u->scheme, u->userinfo, u->host, u->path})
        free(text);
    free(u);
}

extern "C" url *url_copy(const url *u)
{
    unique_url copy{u ? static_cast<url *>(calloc(1, sizeof(url))) : nullptr};
    if (!copy)
        return nullptr;
    for (char *url::*text : {&url::normalized, &url::original, &url::scheme, &url::userinfo, &url::host, &url::path})
        if (!copy_member((*copy).*text, u->*text))
            return nullptr;
    copy->port = u->port;
    copy->is_https = u->is_https;
    copy->is_ipv6 = u->is_ipv6;
    copy->addr = u->addr;
    copy->sockaddr = u->sockaddr;
    if (u->addr.ai_addr)
        copy->addr.ai_addr = &copy->sockaddr.any;
    return copy.release();
}

extern "C" url *url_replace(url **target, const url *source)
{
    url *copy = url_copy(source);
    if (source && !copy)
        return nullptr;
    url_destroy(std::exchange(*target, copy)); // the source may be the target
    return copy;
}
