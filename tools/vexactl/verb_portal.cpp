// SPDX-License-Identifier: MIT
#include "arguments.h"
#include "output.h"
#include "text.h"

#include <libvexa.h>

namespace {

class portal_set {
public:
    portal_set()
    {
        guest_portal_set_init(&set_);
        guest_portal_set_read(&set_);
    }
    portal_set(const portal_set &) = delete;
    portal_set &operator=(const portal_set &) = delete;
    ~portal_set() { guest_portal_set_clear(&set_); }

    const guest_portal *find(const char *name) const { return guest_portal_from_name(&set_, name); }

    json_ref documents() const
    {
        json_ref rows{list()};
        for (const vexa_list *link = set_.portals.next; link != &set_.portals; link = link->next)
            append(rows.get(), document(*reinterpret_cast<const guest_portal *>(link)));
        return rows;
    }

private:
    static json_t *items(buffer *file)
    {
        if (!file)
            return json_null();
        json_t *all = list();
        const std::string_view written{static_cast<const char *>(file->head(file)), file->len(file)};
        for (const std::string &line : split(written, '\n'))
            for (const std::string &item : split(line, ','))
                if (!item.empty())
                    append(all, text(item));
        return all;
    }

    static json_t *document(const guest_portal &p)
    {
        return object({{"name", text(p.name)},
                       {"devices", items(p.devnames)},
                       {"vlans", items(p.vlans)},
                       {"authorized", items(p.authorized)}});
    }

    guest_portal_set set_{};
};

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
     .operands = "NAME MAC",
     .summary = "whether a portal has authorized a client",
     .options = {},
     .example = "vexactl portal auth lobby 02:56:58:00:00:01",
     .run = portal_auth},
};

} // namespace

const verb_family portal_family = verbs;
