// SPDX-License-Identifier: MIT
#include "core/list.h"
#include "core/log.h"
#include "core/owner.h"
#include "device/portal.h"

#include <charconv>
#include <cstring>

namespace {

constexpr char log_tag[] = "guest_portals";

static_assert(sizeof(guest_portal_set) == 2 * sizeof(void *));

// From the portal added last to the first one: of two that claim the same, the one read last holds.
template <typename Matches>
guest_portal *last_portal(const guest_portal_set *set, Matches matches)
{
    for (vexa_list *link = set->portals.prev; link != &set->portals; link = link->prev)
        if (auto *portal = entry_of<guest_portal>(link); matches(portal))
            return portal;
    return nullptr;
}

void add_portal(guest_portal_set *set, const char *name)
{
    auto *portal = static_cast<guest_portal *>(malloc(sizeof(guest_portal)));
    if (!portal) {
        log_err_as("guest_portal_set_read", "Couldn't allocate portal for %s", name);
        return;
    }
    guest_portal_init(portal);
    guest_portal_read(portal, name);
    guest_portal_set_add(set, portal);
}

} // namespace

extern "C" void guest_portal_set_init(guest_portal_set *set)
{
    list_init(&set->portals);
}

extern "C" void guest_portal_set_clear(guest_portal_set *set)
{
    list_clear<guest_portal>(&set->portals, [](guest_portal *portal) {
        guest_portal_clear(portal);
        free(portal);
    });
}

extern "C" void guest_portal_set_add(guest_portal_set *set, guest_portal *p)
{
    list_add_tail(&set->portals, &p->links);
}

extern "C" void guest_portal_set_read(guest_portal_set *set)
{
    const unique_dir folder{opendir(path_guest_portals)};
    if (!folder) {
        log_err("Couldn't open guest dir %s", path_guest_portals);
        return;
    }
    while (const dirent *entry = readdir(folder.get()))
        if (strcmp(entry->d_name, ".") != 0 && strcmp(entry->d_name, "..") != 0)
            add_portal(set, entry->d_name);
}

extern "C" int guest_portal_set_count(const guest_portal_set *set)
{
    int count = 0;
    for (const vexa_list *link = set->portals.next; link != &set->portals; link = link->next)
        count++;
    return count;
}

extern "C" guest_portal *guest_portal_from_device(const guest_portal_set *set, const char *dev)
{
    return last_portal(set, [dev](const guest_portal *p) { return guest_portal_has_device(p, dev) != 0; });
}

extern "C" guest_portal *guest_portal_from_name(const guest_portal_set *set, const char *name)
{
    return last_portal(set, [name](const guest_portal *p) { return strcmp(p->name, name) == 0; });
}

extern "C" guest_portal *guest_portal_from_vlan(const guest_portal_set *set, int vlan)
{
    if (vlan < 0)
        return nullptr;
    char digits[16];
    const std::to_chars_result end = std::to_chars(digits, digits + sizeof digits, vlan);
    const std::string_view item{digits, size_t(end.ptr - digits)};
    return last_portal(set, [item](const guest_portal *p) { return list_has_item(p->vlans, item); });
}
