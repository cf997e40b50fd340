// SPDX-License-Identifier: MIT
#include "arguments.h"
#include "configuration.h"
#include "interface.h"
#include "system.h"

namespace {

int status_of_interface(const char *name, output &out)
{
    json_ref found = counter_document(name);
    if (!found)
        return out.fail(status_unavailable, "cannot read /proc/net/dev");
    if (!json_is_true(json_object_get(found.get(), "present")))
        return out.fail(status_negative, std::string{"no interface '"} + name + "'");
    answer shown{std::move(found), counter_columns};
    shown.side_by_side = true;
    return out.show(shown);
}

int show_status(const arguments &args, output &out)
{
    if (const char *name = args.operand(0))
        return status_of_interface(name, out);
    return out.show({json_ref{system_document()}, system_columns});
}

int services(const arguments &, output &out)
{
    answer found{service_documents(), service_columns};
    found.side_by_side = true;
    return out.show(found);
}

int environment(const arguments &args, output &out)
{
    unique_cfg cfg;
    const std::string trouble = load(args.value("file", running_configuration), cfg);
    const int shown = out.show({json_ref{environment_document(cfg.get())}, environment_columns});
    return trouble.empty() ? shown : out.fail(status_unavailable, trouble);
}

constexpr verb verbs[] = {
    {.name = "status",
     .operands = "[IFNAME]",
     .summary = "how the device stands, or the counters of an interface",
     .options = {},
     .example = "vexactl status eth0",
     .run = show_status},
    {.name = "services",
     .summary = "the services that the running configuration starts",
     .options = {},
     .example = "vexactl services",
     .run = services},
    {.name = "environment",
     .summary = "where the device reports to, and what",
     .options = {},
     .example = "vexactl environment",
     .run = environment},
};

} // namespace

const verb_family system_family = verbs;
