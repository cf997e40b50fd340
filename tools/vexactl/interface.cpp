// SPDX-License-Identifier: MIT
#include "interface.h"

#include "message.h"
#include "system.h"

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

json_t *link_of(const char *name)
{
    const int up = get_ethtool_link_status(name);
    return up < 0 ? json_null() : flag(up == 1);
}

json_t *counter(const dev_status &status, uint64_t value)
{
    return status.present ? number(static_cast<int64_t>(value)) : json_null();
}

const char *duplex_of(const dev_status &status)
{
    static constexpr const char *words[] = {"half", "full"};
    return status.duplex < std::size(words) ? words[status.duplex] : nullptr;
}

json_t *gateway_mac()
{
    char mac[18] = "";
    return get_gateway_mac(mac, sizeof mac) == 1 ? text(mac) : json_null();
}

json_t *gateway_address()
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
                   {"mac", text(mac_text(status.hwaddr))},
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
    char device[IFNAMSIZ] = ""; // stays so when no interface is found
    const bool found = get_uplink_device(device, sizeof device) == 0 && *device;
    return object({{"state", text(states[get_wireless_uplink_state()])},
                   {"device", found ? text(device) : json_null()},
                   {"dhcp", dhcp_status()},
                   {"gateway", gateway_address()},
                   {"gateway_mac", gateway_mac()},
                   {"internet", internet_status()}});
}

json_t *gateway_document()
{
    return object(
        {{"address", gateway_address()}, {"mac", gateway_mac()}, {"device", text(get_default_gw_interface())}});
}

json_ref counter_document(const char *name)
{
    dev_status status{};
    if (fill_dev_status(name, &status) != 0)
        return nullptr;
    json_ref document{object({{"name", text(name)},
                              {"present", flag(status.present != 0)},
                              {"up", flag((status.flags & IFF_UP) != 0)},
                              {"mac", text(mac_text(status.hwaddr))},
                              {"address", status.ip ? text(status.ip_str) : json_null()},
                              {"netmask", status.ip ? text(status.netmask_str) : json_null()},
                              {"speed_mbit", status.speed ? number(status.speed) : json_null()},
                              {"duplex", text_or_null(duplex_of(status))}})};
    static constexpr struct {
        const char *key;
        uint64_t dev_status::*counter;
    } counters[] = {
        {"rx_bytes", &dev_status::rx_bytes},         {"rx_packets", &dev_status::rx_packets},
        {"rx_errors", &dev_status::rx_errors},       {"rx_dropped", &dev_status::rx_dropped},
        {"rx_multicast", &dev_status::rx_multicast}, {"tx_bytes", &dev_status::tx_bytes},
        {"tx_packets", &dev_status::tx_packets},     {"tx_errors", &dev_status::tx_errors},
        {"tx_dropped", &dev_status::tx_dropped},
    };
    for (const auto &c : counters)
        json_object_set_new(document.get(), c.key, counter(status, status.*c.counter));
    return document;
}
