// SPDX-License-Identifier: MIT
#include "arguments.h"
#include "bridge.h"
#include "interface.h"

namespace {

// all bridges, or the one that is named, if it is there
bridge_map wanted_bridges(const arguments &args, const bridge_map &all)
{
    const char *name = args.operand(0);
    if (!name)
        return all;
    const auto found = all.find(name);
    return found == all.end() ? bridge_map{} : bridge_map{*found};
}

int no_bridge(const arguments &args, output &out)
{
    return out.fail(status_negative, std::string{"no bridge '"} + args.operand(0) + "'");
}

int bridge(const arguments &args, output &out)
{
    const bridge_map wanted = wanted_bridges(args, find_bridges());
    if (wanted.empty() && args.operand(0))
        return no_bridge(args, out);
    return out.show({bridge_port_documents(wanted), bridge_port_columns, "no bridge ports"});
}

int fdb(const arguments &args, output &out)
{
    const bridge_map all = find_bridges();
    const bridge_map wanted = wanted_bridges(args, all);
    if (wanted.empty() && args.operand(0))
        return no_bridge(args, out);
    answer found{json_ref{list()}, fdb_columns, "no addresses"};
    for (const auto &[name, ports] : wanted)
        json_array_extend(found.document.get(), fdb_documents(name, all).get());
    return out.show(found);
}

int gateway(const arguments &, output &out)
{
    const answer found{json_ref{gateway_document()}, gateway_columns};
    const int shown = out.show(found);
    return json_is_null(json_object_get(found.document.get(), "address")) ? out.fail(status_negative, "no gateway")
                                                                          : shown;
}

constexpr verb verbs[] = {
    {.name = "bridge",
     .operands = "[BRIDGE]",
     .summary = "the ports of a bridge, or of all, and their states",
     .options = {},
     .example = "vexactl bridge br0",
     .run = bridge},
    {.name = "fdb",
     .operands = "[BRIDGE]",
     .summary = "the addresses that a bridge, or all, knows",
     .options = {},
     .example = "vexactl fdb br0 --json",
     .run = fdb},
    {.name = "gateway",
     .summary = "the gateway behind br0, and the interface of the default route",
     .options = {},
     .example = "vexactl gateway",
     .run = gateway},
};

} // namespace

const verb_family bridge_family = verbs;
