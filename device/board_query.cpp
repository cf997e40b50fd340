// SPDX-License-Identifier: MIT
#include <algorithm>
#include <cstring>
#include <iterator>
#include <libvexa.h>
#include <span>

namespace {

using port_groups = std::span<const board_port_group>;
using ports = std::span<const board_port>;

// Counts beyond the room of the record count as that room.
port_groups groups_of(const board &b)
{
    return {b.eth_groups, std::min<size_t>(b.eth_group_count, std::size(b.eth_groups))};
}

ports ports_of(const board_port_group &group)
{
    return {group.ports, std::min<size_t>(group.port_count, std::size(group.ports))};
}

bool is_main(const board_port &port)
{
    return strcmp(port.label, "Main") == 0 || strcmp(port.label, "PoE In + Data") == 0;
}

} // namespace

extern "C" int board_get_poe_budget(void)
{
    const board *b = board_identify();
    return std::max(b->poe_budget - b->poe_reserved, 0);
}

extern "C" int board_has_poe(void)
{
    return board_get_poe_budget() != 0;
}

extern "C" int board_get_cpu_mac(uint8_t mac[6])
{
    if (!mac)
        return -1;
    memcpy(mac, board_identify()->cpu_mac, 6);
    return 0;
}

extern "C" const char *get_radio_dev_name(int radio_index)
{
    const board *b = board_identify();
    const int count = std::min(int{b->radio_count}, int(std::size(b->radios)));
    return radio_index >= 0 && radio_index < count ? b->radios[radio_index].ifname : "";
}

extern "C" const board_port *get_main_phy(void)
{
    for (const board_port_group &group : groups_of(*board_identify())) {
        const ports all = ports_of(group);
        const auto main = std::ranges::find_if(all, is_main);
        if (all.size() == 1)
            return all.data();
        if (main != all.end())
            return &*main;
    }
    return nullptr;
}

extern "C" int get_main_phy_port_id(void)
{
    const board_port *port = get_main_phy();
    return port ? port->port_id : -1;
}

extern "C" int get_main_phy_idx(void)
{
    const board_port *port = get_main_phy();
    return port ? port->phy_idx : -1;
}

extern "C" int get_phy_port_id_by_idx(int phy_idx)
{
    for (const board_port_group &group : groups_of(*board_identify()))
        for (const board_port &port : ports_of(group))
            if (port.phy_idx == phy_idx)
                return port.port_id;
    return -1;
}

extern "C" int get_num_of_eth_ports(void)
{
    int count = 0;
    for (const board_port_group &group : groups_of(*board_identify()))
        count += group.port_count;
    return count;
}

extern "C" int corvo_board_is_beta_firmware(const board *b)
{
    return b && b->min_fw_version == VEXA_BETA_FIRMWARE;
}
