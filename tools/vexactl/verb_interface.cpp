// SPDX-License-Identifier: MIT
#include "arguments.h"
#include "interface.h"
#include "output.h"

#include <net/if.h>

namespace {

int iface(const arguments &args, output &out)
{
    static constexpr column labels[] = {
        {"name", "Interface"},
        {"index", "Index"},
        {"up", "State", kind::on_off},
        {"link", "Link"},
        {"address", "Address"},
        {"mac", "Hardware address"},
        {"speed_mbit", "Mbit/s"},
        {"rx_bytes", "Received", kind::bytes},
        {"tx_bytes", "Sent", kind::bytes},
    };
    const char *name = args.operand(0);
    if (name && if_nametoindex(name) == 0)
        return out.fail(status_negative, std::string{"no interface '"} + name + "'");
    if (name)
        return out.show({json_ref{interface_document(name)}, labels});
    return out.show({json_ref{interface_documents()}, interface_columns});
}

int uplink(const arguments &, output &out)
{
    const answer found{json_ref{uplink_document()}, uplink_columns};
    const int shown = out.show(found);
    return json_is_null(json_object_get(found.document.get(), "device")) ? out.fail(status_negative, "no uplink device")
                                                                         : shown;
}

constexpr verb verbs[] = {
    {.name = "iface",
     .operands = "[IFNAME]",
     .summary = "an interface, or all: state, addresses, traffic",
     .options = {},
     .example = "vexactl iface br0",
     .run = iface},
    {.name = "uplink",
     .summary = "the interface that leads to the network",
     .options = {},
     .example = "vexactl uplink",
     .run = uplink},
};

} // namespace

const verb_family interface_family = verbs;
