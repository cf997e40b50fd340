// SPDX-License-Identifier: MIT
#include "arguments.h"
#include "interface.h"
#include "output.h"

#include <net/if.h>

namespace {

constexpr column columns[] = {
    {"name", "Interface"}, {"index", "Index", kind::number}, {"up", "State", kind::on_off}, {"address", "Address"}};

int iface(const arguments &args, output &out)
{
    const char *name = args.operand(0);
    if (name && if_nametoindex(name) == 0)
        return out.fail(status_negative, std::string{"no interface '"} + name + "'");
    if (name)
        return out.show({json_ref{interface_document(name)}, columns});
    return out.show({json_ref{interface_documents()}, columns});
}

int uplink(const arguments &, output &out)
{
    static constexpr column labels[] = {{"state", "State"}, {"device", "Device"}};
    const answer found{json_ref{uplink_document()}, labels};
    const int shown = out.show(found);
    return json_is_null(json_object_get(found.document.get(), "device")) ? out.fail(status_negative, "no uplink device")
                                                                         : shown;
}

constexpr verb verbs[] = {
    {.name = "iface",
     .operands = "[NAME]",
     .summary = "an interface, or all: index, state, IPv4 address",
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
