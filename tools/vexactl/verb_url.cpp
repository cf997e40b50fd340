// SPDX-License-Identifier: MIT
#include "arguments.h"
#include "output.h"
#include "progress.h"
#include "text.h"

#include <libvexa.h>

namespace {

struct destroy_url {
    void operator()(url *u) const { url_destroy(u); }
};

constexpr column labels[] = {{"url", "URL"},
                             {"scheme", "Scheme"},
                             {"user", "User"},
                             {"host", "Host"},
                             {"ipv6", "IPv6 host", kind::on_off},
                             {"port", "Port", kind::number},
                             {"path", "Path"},
                             {"address", "Address"}};

json_ref parts_of(const url &u)
{
    return json_ref{object({{"url", text(u.normalized)},
                            {"scheme", text(u.scheme)},
                            {"user", text_or_null(u.userinfo)},
                            {"host", text(u.host)},
                            {"ipv6", flag(u.is_ipv6)},
                            {"port", number(u.port)},
                            {"path", text(u.path)}})};
}

// An address of its own family, a name in IPv4.
int resolve(url &u)
{
    const progress looking_up{std::string{"looking up "} + visible(u.host)};
    addrinfo hints{};
    hints.ai_family = AF_INET6;
    hints.ai_socktype = SOCK_STREAM;
    return url_resolve(&u, u.is_ipv6 ? &hints : nullptr);
}

int show_url(const arguments &args, output &out)
{
    const std::unique_ptr<url, destroy_url> u{url_parse(args.operand(0))};
    if (!u)
        return out.fail(status_negative, std::string{"not a usable URL: '"} + args.operand(0) + "'");
    const bool resolves = args.has("resolve");
    if (const int error = resolves ? resolve(*u) : 0; error != 0)
        return out.fail(error == EAI_AGAIN ? status_unavailable : status_negative,
                        std::string{"cannot resolve '"} + u->host + "': " + gai_strerror(error));
    const answer parts{parts_of(*u), {labels, std::size(labels) - !resolves}};
    if (resolves) {
        char address[80];
        json_object_set_new(parts.document.get(), "address",
                            text(url_addr_ntop(u->addr.ai_addr, address, sizeof address)));
    }
    return out.show(parts);
}

constexpr verb verbs[] = {
    {.name = "url",
     .operands = "TEXT",
     .summary = "the parts of a URL, with its port and path filled in",
     .options = {{{"resolve", nullptr, "look up its host, too"}}},
     .example = "vexactl url --resolve https://cloud.example/devices",
     .run = show_url},
};

} // namespace

const verb_family url_family = verbs;
