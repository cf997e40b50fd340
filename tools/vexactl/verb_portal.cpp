// SPDX-License-Identifier: MIT
#include "arguments.h"
#include "output.h"
#include "portal.h"
#include "text.h"

namespace {

int portals(const arguments &, output &out)
{
    static constexpr column columns[] = {{"name", "Portal"},
                                         {"devices", "Devices", kind::text, true},
                                         {"vlans", "VLANs", kind::text, true},
                                         {"authorized", "Authorized", kind::text, true}};
    return out.show({portal_set{}.documents(), columns, "no guest portals"});
}

int portal_auth(const arguments &args, output &out)
{
    const portal_set set;
    const guest_portal *portal = set.find(args.operand(0));
    if (!portal)
        return out.fail(status_negative, std::string{"no portal '"} + args.operand(0) + "'");
    const bool authorized = guest_portal_is_auth(portal, args.operand(1)) != 0;
    const int shown = out.show(
        {json_ref{object(
             {{"portal", text(portal->name)}, {"client", text(args.operand(1))}, {"authorized", flag(authorized)}})},
         {}});
    return authorized ? shown : out.fail(status_negative, "the portal has not authorized the client");
}

constexpr verb verbs[] = {
    {.name = "portals",
     .summary = "the guest portals with their devices, VLANs and clients",
     .options = {},
     .example = "vexactl portals",
     .run = portals},
    {.name = "portal auth",
     .operands = "PORTAL MAC",
     .summary = "whether a portal has authorized a client",
     .options = {},
     .example = "vexactl portal auth lobby 02:56:58:00:00:01",
     .run = portal_auth},
};

} // namespace

const verb_family portal_family = verbs;
