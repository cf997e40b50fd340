// SPDX-License-Identifier: MIT
#include "interface.h"

#include <arpa/inet.h>
#include <libvexa.h>
#include <net/if.h>

namespace {

struct drop_names {
    void operator()(struct if_nameindex *names) const noexcept { if_freenameindex(names); }
};

json_t *address_of(const char *name)
{
    in_addr address{};
    char written[INET_ADDRSTRLEN];
    if (get_iface_ip(name, &address.s_addr) < 0)
        return json_null();
    return text(inet_ntop(AF_INET, &address, written, sizeof written));
}

} // namespace

json_t *interface_document(const char *name)
{
    uint32_t index = 0;
    const bool found = get_iface_index(name, &index) == 0;
    return object({{"name", text(name)},
                   {"index", found ? number(index) : json_null()},
                   {"up", flag(iface_is_up(name) != 0)},
                   {"address", address_of(name)}});
}

json_t *interface_documents()
{
    json_t *all = list();
    const std::unique_ptr<struct if_nameindex, drop_names> names{if_nameindex()};
    for (const struct if_nameindex *n = names.get(); n && n->if_index != 0; n++)
        append(all, interface_document(n->if_name));
    return all;
}

json_t *uplink_document()
{
    static constexpr const char *states[] = {"unknown", "init", "wds", "eth", "down"};
    char device[IFNAMSIZ] = ""; // stays so when no interface is found
    const bool found = get_uplink_device(device, sizeof device) == 0 && *device;
    return object(
        {{"state", text(states[get_wireless_uplink_state()])}, {"device", found ? text(device) : json_null()}});
}
