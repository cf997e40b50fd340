// SPDX-License-Identifier: MIT
#include "fuzz/check.h"

#include <cstring>
#include <libvexa.h>
#include <string>

namespace {

bool is_printable(const char *text)
{
    for (; *text; text++)
        if (static_cast<unsigned char>(*text) <= ' ' || *text == 0x7f)
            return false;
    return true;
}

void check_url(const url &u)
{
    uint16_t port = 0;
    check(is_printable(u.normalized) && is_printable(u.host));
    check(*u.host && !strpbrk(u.host, "[]/?;@") && strchr("/?;", u.path[0]) && u.port > 0);
    check(url_scheme2port(u.scheme, &port) == 0);
    if (strlen(u.normalized) > 1024)
        return;
    url *again = url_parse(u.normalized);
    check(again && strcmp(again->host, u.host) == 0 && again->port == u.port);
    // a letter in a port that was passed over makes a name of digits, which without it are an address
    if (again->is_ipv6 == u.is_ipv6)
        check(strcmp(again->normalized, u.normalized) == 0);
    check(url_replace(&again, again) != nullptr);
    url_destroy(again);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    const std::string text{reinterpret_cast<const char *>(data), size};
    if (url *u = url_parse(text.c_str())) {
        check_url(*u);
        url_destroy(u);
    }
    return 0;
}
