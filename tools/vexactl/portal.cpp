// SPDX-License-Identifier: MIT
#include "portal.h"

#include "arguments.h"

namespace {

json_t *items(buffer *file)
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

json_t *document(const guest_portal &p)
{
    return object({{"name", text(p.name)},
                   {"devices", items(p.devnames)},
                   {"vlans", items(p.vlans)},
                   {"authorized", items(p.authorized)}});
}

} // namespace

json_ref portal_set::documents() const
{
    json_ref rows{list()};
    for (const vexa_list *link = set_.portals.next; link != &set_.portals; link = link->next)
        append(rows.get(), document(*reinterpret_cast<const guest_portal *>(link)));
    return rows;
}
