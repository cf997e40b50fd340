// SPDX-License-Identifier: MIT
#include "device/board_table.h"

#include "core/text.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <span>

// The names: a bird for the form (Jay on the ceiling, Wren in the wall, Kite for long distances, Tern where no cable
// leads, Stork for gateways), the hardware generation, and a variant. A platform is the name in short.

namespace {

constexpr uint16_t mediatek = 0x14c3;
constexpr uint32_t cortex_a53 = 0x410fd034; // the id register; other processors go by the number of their chip
constexpr uint32_t wired_only = 0x0000ffff; // of the feature mask

enum board_class : uint8_t { extender = 20, ceiling = 22, in_wall = 23, gateway = 38 };
enum band : uint8_t { band_2 = 1, band_5 = 2, band_6 = 4 };
enum standard : uint8_t { n = 1, n_ac_ax = 7 };

struct radio_row {
    const char *ifname;
    const char *chip;
    uint16_t device_id;
    uint8_t chains;
    uint8_t bands;
    uint8_t standards;
};

using model_constants = std::array<uint16_t, 2>;
constexpr model_constants most = {30, 150};

struct board_row {
    uint16_t system_id;
    board_class kind;
    const char *name;
    const char *platform;
    uint32_t processor;
    uint32_t min_fw_version;
    std::span<const board_port> ports[2];
    std::span<const radio_row> radios;
    model_constants constants = most;
    const char *mcu_image = "";
    uint32_t feature_mask = 0xffffffff;
};

constexpr board_port main_port(uint8_t phy_idx, uint8_t port_id)
{
    return {phy_idx, port_id, 0, 0, {}, "Main"};
}

constexpr board_port powered_port(uint8_t phy_idx, uint8_t port_id)
{
    return {phy_idx, port_id, 1, 0, {}, "PoE In + Data"};
}

constexpr board_port powering_port(uint8_t phy_idx, uint8_t port_id)
{
    return {phy_idx, port_id, 0, VEXA_PORT_POE_OUT, {}, "PoE Out + Data"};
}

constexpr board_port data_port(uint8_t phy_idx, uint8_t port_id)
{
    return {phy_idx, port_id, 0, 0, {}, "Data"};
}

// Port numbers count from 1, as LLDP neighbours are looked up by them: eth0 is port 1.
constexpr board_port one_powered[] = {powered_port(4, 1)};
constexpr board_port one_multigigabit[] = {powered_port(8, 1)};
constexpr board_port one_data[] = {data_port(5, 1)};
constexpr board_port second_data[] = {data_port(5, 2)};
constexpr board_port in_wall_switch[] = {powered_port(4, 1), data_port(0, 2), data_port(1, 3), data_port(2, 4),
                                         powering_port(3, 5)};
constexpr board_port small_switch[] = {data_port(0, 2), powered_port(4, 1), powering_port(1, 3)};
constexpr board_port gateway_switch[] = {data_port(0, 1), data_port(1, 2), data_port(2, 3), data_port(3, 4)};
constexpr board_port uplink_port[] = {main_port(4, 5)};

constexpr radio_row mt7603_mt7915[] = {{"ra0", "MT7603", 0x7603, 2, band_2, n},
                                       {"rai0", "MT7915", 0x7915, 2, band_5, n_ac_ax}};
constexpr radio_row mt7622_mt7915[] = {{"ra0", "MT7622", 0x7622, 4, band_2, n},
                                       {"rai0", "MT7915", 0x7915, 4, band_5, n_ac_ax}};
constexpr radio_row mt7915_mt7915[] = {{"ra0", "MT7915", 0x7915, 4, band_2, n_ac_ax},
                                       {"rai0", "MT7915", 0x7915, 4, band_5, n_ac_ax}};
constexpr radio_row mt7981_mt7981[] = {{"ra0", "MT7981", 0x7981, 2, band_2, n_ac_ax},
                                       {"rai0", "MT7981", 0x7981, 3, band_5, n_ac_ax}};
constexpr radio_row mt7981_at_6_ghz[] = {{"ra0", "MT7981", 0x7981, 2, band_2, n_ac_ax},
                                         {"rai0", "MT7981", 0x7981, 3, band_6, n_ac_ax}};

constexpr board_row rows[] = {
    {0xa610, ceiling, "Jay 5 Lite", "J5L", 0x7621, 0x00051d00, {one_powered}, mt7603_mt7915},
    {0xa611, ceiling, "Jay 5", "J5", 0x7622, 0x00051d00, {one_powered}, mt7622_mt7915},
    {0xa612, ceiling, "Jay 5 Pro", "J5P", 0x7622, 0x00052a00, {one_powered, second_data}, mt7915_mt7915},
    {0xa613, extender, "Tern 5", "T5", 0x7621, 0x00053b00, {one_data}, mt7603_mt7915},
    {0xa614, in_wall, "Wren 5", "W5", 0x7621, 0x00051d00, {in_wall_switch}, mt7603_mt7915},
    {0xa640, ceiling, "Kite 5", "K5", 0x7622, 0x00052a00, {one_powered}, mt7622_mt7915, {75, 300}},
    {0xa620, ceiling, "Jay 5 Long Range", "J5LR", cortex_a53, 0x00051d00, {one_multigigabit}, mt7622_mt7915},
    {0xa634, in_wall, "Wren 5 Mini", "W5M", 0x7621, 0x0006000c, {small_switch}, mt7603_mt7915},
    {0xa642, ceiling, "Jay 5 Plus", "J5PL", 0x7981, 0x00060405, {one_powered}, mt7981_mt7981, most, "jay-lamp.bin"},
    {0xa643, ceiling, "Jay 5 Preview", "J5X", 0x7981, VEXA_BETA_FIRMWARE, {one_powered}, mt7981_at_6_ghz},
    {0xe990, gateway, "Stork 5", "S5", 0x7621, 0x0006000c, {uplink_port, gateway_switch}, {}, most, "", wired_only},
};

board records[std::size(rows)]; // system id 0 until it is made

void make_radio(board_radio &radio, const radio_row &row, uint16_t system_id)
{
    radio.chip = row.chip;
    radio.ifname = row.ifname;
    radio.chip_family = row.device_id & 0xff00;
    radio.bus_vendor_id = mediatek;
    radio.bus_device_id = row.device_id;
    radio.subsystem_id = system_id;
    radio.subsystem_vendor_id = VEXA_VENDOR_ID;
    radio.tx_chains = radio.rx_chains = row.chains;
    radio.bands = row.bands;
    radio.flags = row.standards;
}

void make_record(board &record, const board_row &row)
{
    copy_text(record.name, sizeof record.name, row.name);
    copy_text(record.platform, sizeof record.platform, row.platform);
    record.board_class = row.kind;
    record.processor = row.processor;
    std::ranges::copy(row.constants, record.constants);
    record.eth_group_count = 0;
    for (const auto &ports : row.ports) {
        if (ports.empty())
            break;
        board_port_group &group = record.eth_groups[record.eth_group_count++];
        group.port_count = uint8_t(ports.size());
        std::ranges::copy(ports, group.ports);
    }
    record.radio_count = 0;
    for (const radio_row &radio : row.radios)
        make_radio(record.radios[record.radio_count++], radio, row.system_id);
    record.feature_mask = row.feature_mask;
    record.min_fw_version = row.min_fw_version;
    record.mcu_image = row.mcu_image;
    record.system_id = row.system_id;
}

board *record_of(const board_row &row)
{
    board &record = records[&row - rows];
    if (record.system_id == 0)
        make_record(record, row);
    return &record;
}

} // namespace

board *find_board(uint16_t system_id)
{
    for (const board_row &row : rows)
        if (row.system_id == system_id)
            return record_of(row);
    return nullptr;
}

board *find_board(const char *platform)
{
    for (const board_row &row : rows)
        if (strcmp(row.platform, platform) == 0)
            return record_of(row);
    return nullptr;
}
