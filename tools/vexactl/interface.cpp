// SPDX-License-Identifier: MIT
#include "interface.h"

#include "text.h"

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

json_t *mac_text(const uint8_t mac[6])
{
    return text(format("%02x:%02x:%02x:%02x:%02x:%02x", mac[0], mac[1], mac[2], mac[3], mac[4], mac[5]));
}

json_t *link_of(const char *name)
{
    const int up = get_ethtool_link_status(name);
    return up < 0 ? json_null() : flag(up == 1);
}

json_t *counter(const dev_status &status, uint64_t value)
{
    return status.present ? number(static_cast<int64_t>(value)) : json_null();
}

json_t *gateway_mac()
{
    char mac[18] = "";
    return get_gateway_mac(mac, sizeof mac) == 1 ? text(mac) : json_null();
}

json_t *gateway()
{
    char written[INET_ADDRSTRLEN] = "";
    in_addr address{};
    return get_gateway(written, &address, sizeof written) == 1 ? text(written) : json_null();
}

} // namespace

json_t *interface_document(const char *name)
{
    uint32_t index = 0;
    const bool found = get_iface_index(name, &index) == 0;
    dev_status status{};
    (void)fill_dev_status(name, &status); // what it cannot tell stays 0, as `present` does
    return object({{"name", text(name)},
                   {"index", found ? number(index) : json_null()},
                   {"up", flag(iface_is_up(name) != 0)},
                   {"link", link_of(name)},
                   {"address", address_of(name)},
                   {"mac", mac_text(status.hwaddr)},
                   {"speed_mbit", status.speed ? number(status.speed) : json_null()},
                   {"rx_bytes", counter(status, status.rx_bytes)},
                   {"tx_bytes", counter(status, status.tx_bytes)}});
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
    static constexpr const char *leases[] = {"unknown", "deconfig", "leasefail", "bound", "renew"};
    char device[IFNAMSIZ] = ""; // stays so when no interface is found
    const bool found = get_uplink_device(device, sizeof device) == 0 && *device;
    const int internet = system_internet_status();
    return object({{"state", text(states[get_wireless_uplink_state()])},
                   {"device", found ? text(device) : json_null()},
                   {"dhcp", text(leases[system_dhcp_status()])},
                   {"gateway", gateway()},
                   {"gateway_mac", gateway_mac()},
                   {"internet", internet < 0 ? json_null() : flag(internet != 0)}});
}
