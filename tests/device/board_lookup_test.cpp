// SPDX-License-Identifier: MIT
#include "tests/support/device.h"

#include <set>
#include <span>

namespace {

template <size_t size>
bool is_text(const char (&text)[size])
{
    return text[0] != '\0' && strnlen(text, size) < size;
}

// A port can be told by its number, and its label says which way power goes.
void expect_ports(const board &b)
{
    const std::set<std::string> labels{"Main", "PoE In + Data", "PoE Out + Data", "Data"};
    std::set<int> phys;
    ASSERT_TRUE(b.eth_group_count == 1 || b.eth_group_count == 2);
    for (const board_port_group &group : std::span{b.eth_groups, b.eth_group_count}) {
        ASSERT_TRUE(group.port_count >= 1 && group.port_count <= 56);
        for (const board_port &port : std::span{group.ports, group.port_count}) {
            EXPECT_TRUE(phys.insert(port.phy_idx).second && labels.count(port.label)) << port.label;
            EXPECT_EQ(port.poe_in == 1, strcmp(port.label, "PoE In + Data") == 0);
            EXPECT_EQ(port.flags == VEXA_PORT_POE_OUT, strcmp(port.label, "PoE Out + Data") == 0);
        }
    }
}

void expect_radios(const board &b)
{
    ASSERT_LE(b.radio_count, 4);
    for (const board_radio &radio : std::span{b.radios, b.radio_count}) {
        EXPECT_EQ(radio.bus_device_id, strtoul(radio.chip + 2, nullptr, 16));
        EXPECT_EQ(std::tuple(radio.subsystem_id, radio.subsystem_vendor_id), std::tuple(b.system_id, 0x0777));
        EXPECT_TRUE(radio.rx_chains >= radio.tx_chains && radio.bands != 0 && radio.flags != 0);
    }
}

} // namespace

TEST(board_tables, agree_with_each_other)
{
    std::set<uint16_t> ids;
    std::set<std::string> names, codes;
    for (unsigned id = 0; id <= UINT16_MAX; id++) {
        const struct device *known = corvo_get_device(uint16_t(id));
        EXPECT_EQ(device_identify_by_sysid(uint16_t(id)), known);
        const board *b = corvo_get_board(uint16_t(id));
        if (known) {
            EXPECT_TRUE(is_text(known->name) && names.insert(known->name).second) << known->name;
            EXPECT_TRUE(is_text(known->code) && codes.insert(known->code).second) << known->code;
            EXPECT_EQ(known->system_id, id);
        }
        if (!b)
            continue;
        ids.insert(b->system_id);
        ASSERT_TRUE(known && is_text(b->name) && is_text(b->platform) && b->mcu_image) << id;
        SCOPED_TRACE(b->name);
        EXPECT_EQ(corvo_identify_platform(b->platform), b);
        EXPECT_EQ(board_identify_platform(b->platform), b);
        EXPECT_STREQ(known->name, b->name);
        EXPECT_STREQ(known->code, b->platform);
        expect_ports(*b);
        expect_radios(*b);
        EXPECT_EQ(corvo_board_is_beta_firmware(b), id == 0xa643);
    }
    EXPECT_EQ(names.size(), 73U);
    EXPECT_EQ(ids, (std::set<uint16_t>{0xa610, 0xa611, 0xa612, 0xa613, 0xa614, 0xa640, 0xa620, 0xa634, 0xa642, 0xa643,
                                       0xe990}));
    EXPECT_EQ(corvo_identify_platform("none"), nullptr);
    EXPECT_EQ(corvo_board_is_beta_firmware(nullptr), 0);
}

TEST(map_board_name, knows_legacy_models_by_their_first_radio)
{
    const struct {
        int system_id, radio_count, subsystem_id;
        const char *name;
    } rows[] = {{1, 0, 0x3009, ""}, {1, 1, 0x3009, "Jay Classic"}, {1, 4, 0x3005, "Kite Classic"}, {2, 1, 0x3005, ""}};
    for (const auto &row : rows) {
        board b{};
        b.system_id = uint16_t(row.system_id);
        b.radio_count = uint8_t(row.radio_count);
        b.radios[0].subsystem_id = uint16_t(row.subsystem_id);
        EXPECT_STREQ(map_board_name(&b), row.name);
    }
}

TEST(firmware_tables, go_on_from_each_other)
{
    for (int row = 0; row < 3; row++)
        for (int i = 0; i <= row; i++) {
            EXPECT_EQ(g_fw_oui_table[row].ouis[i], g_fw_oui_table[2].ouis[i]);
            EXPECT_EQ(g_fw_oui_table[row].ouis[i] >> 16 & 3, 2U) << "locally administered, of one device";
            EXPECT_EQ(g_fw_oui_table[row].ouis[row + 1], 0U);
        }
    EXPECT_EQ(g_fw_oui_table[0].ouis[0], VEXA_OUI);
}
