// SPDX-License-Identifier: MIT
#include "arguments.h"
#include "lldp.h"

namespace {

int lldp(const arguments &args, output &out)
{
    json_ref found = neighbour_documents();
    if (!found)
        return out.fail(status_unavailable, "the LLDP daemon's client does not answer");
    const bool none = json_array_size(found.get()) == 0;
    int shown;
    if (args.has("raw")) {
        shown = out.show({std::move(found), neighbour_columns});
    } else {
        json_ref behind = none ? nullptr : switch_document();
        std::vector<section> page;
        page.push_back({"switch", "Uplink", {behind ? std::move(behind) : json_ref{object({})}, switch_columns}});
        page.push_back({"neighbours", "Neighbours", {std::move(found), neighbour_columns}});
        shown = out.page("LLDP", page);
    }
    return none ? out.fail(status_negative, "no LLDP neighbours") : shown;
}

constexpr verb verbs[] = {
    {.name = "lldp",
     .summary = "what the device is plugged into, and its neighbours on all ports",
     .options = {{{"raw", nullptr, "only the list of neighbours, as the library gives it"}}},
     .example = "vexactl lldp --raw --json",
     .run = lldp},
};

} // namespace

const verb_family lldp_family = verbs;
