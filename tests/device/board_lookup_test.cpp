// SPDX-License-Identifier: MIT
#include "tests/support/device.h"

#include <set>

namespace {

template <typename Visit>
void for_each_id(Visit visit)
{
    for (unsigned id = 0; id <= UINT16_MAX; id++)
        visit(uint16_t(id));
}

template <size_t size>
bool is_text(const char (&text)[size])
{
    return text[0] != '\0' && strnlen(text, size) < size;
}

void expect_ports(const board &b)
{
    const std::set<std::string> labels{"Main", "PoE In + Data", "PoE Out + Data", "Data"};
    std::set<int> phys;
    int count = 0;
    ASSERT_TRUE(b.eth_group_count == 1 || b.eth_group_count == 2);
    for (int g = 0; g < b.eth_group_count; g++) {
        ASSERT_TRUE(b.eth_groups[g].port_count >= 1 && b.eth_groups[g].port_count <= 56);
        for (int p = 0; p < b.eth_groups[g].port_count; p++) {
            const board_port &port = b.eth_groups[g].ports[p];
            EXPECT_EQ(labels.count(port.label), 1U) << port.label;
            EXPECT_EQ(port.poe_in == 1, strcmp(port.label, "PoE In + Data") == 0);
            EXPECT_EQ(port.flags == VEXA_PORT_POE_OUT, strcmp(port.label, "PoE Out + Data") == 0);
            phys.insert(port.phy_idx);
            count++;
        }
    }
    EXPECT_EQ(phys.size(), size_t(count)) << "a port can be told by its phy_idx";
}

void expect_radios(const board &b)
{
    ASSERT_LE(b.radio_count, 4);
    for (int i = 0; i < b.radio_count; i++) {
        const board_radio &radio = b.radios[i];
        EXPECT_EQ(radio.bus_device_id, strtoul(radio.chip + 2, nullptr, 16));
        EXPECT_EQ(std::tuple(radio.bus_vendor_id, radio.subsystem_id, radio.subsystem_vendor_id),
                  std::tuple(0x14c3, b.system_id, 0x0777));
        EXPECT_STREQ(radio.ifname, i == 0 ? "ra0" : "rai0");
        EXPECT_TRUE(radio.rx_chains >= radio.tx_chains &&
                    radio.bands == (i == 0                  ? 1
                                    : b.system_id == 0xa643 ? 4
                                                            : 2) &&
                    radio.flags != 0);
    }
}

} // namespace

TEST(corvo_get_board, has_a_whole_record_of_each_model)
{
    const std::set<uint32_t> versions{0x00051d00, 0x00052a00, 0x00053b00, 0x0006000c, 0x00060405, 0x00090909};
    const std::set<uint32_t> classes{20, 22, 23, 38};
    std::set<uint16_t> ids;
    std::set<std::string> names, platforms;
    for_each_id([&](uint16_t id) {
        const board *b = corvo_get_board(id);
        if (!b)
            return;
        SCOPED_TRACE(b->name);
        ids.insert(b->system_id);
        ASSERT_TRUE(is_text(b->name) && is_text(b->platform) && b->mcu_image);
        EXPECT_TRUE(names.insert(b->name).second && platforms.insert(b->platform).second);
        EXPECT_EQ(corvo_identify_platform(b->platform), b);
        EXPECT_EQ(board_identify_platform(b->platform), corvo_get_board(id));
        EXPECT_TRUE(versions.count(b->min_fw_version) && classes.count(b->board_class) && b->processor != 0);
        EXPECT_EQ(std::tuple(b->poe_budget, b->poe_reserved, b->hw_rev, b->cpu_mac[0]), std::tuple(0, 0, 0, 0));
        expect_ports(*b);
        expect_radios(*b);
        const struct device *known = corvo_get_device(id);
        ASSERT_NE(known, nullptr);
        EXPECT_STREQ(known->name, b->name);
        EXPECT_STREQ(known->code, b->platform);
    });
    EXPECT_EQ(ids, (std::set<uint16_t>{0xa610, 0xa611, 0xa612, 0xa613, 0xa614, 0xa640, 0xa620, 0xa634, 0xa642, 0xa643,
                                       0xe990}));
    EXPECT_EQ(corvo_get_board(0xe990)->radio_count, 0) << "wires only";
    EXPECT_EQ(corvo_identify_platform("none"), nullptr);
    EXPECT_EQ(corvo_board_is_beta_firmware(corvo_get_board(0xa643)), 1);
    EXPECT_EQ(corvo_board_is_beta_firmware(corvo_get_board(0xa642)) + corvo_board_is_beta_firmware(nullptr), 0);
}

TEST(corvo_get_device, knows_seventy_three_models)
{
    std::set<std::string> names, codes;
    for_each_id([&](uint16_t id) {
        const struct device *d = corvo_get_device(id);
        EXPECT_EQ(device_identify_by_sysid(id), d);
        if (!d)
            return;
        EXPECT_EQ(d->system_id, id);
        EXPECT_TRUE(is_text(d->name) && names.insert(d->name).second) << d->name;
        EXPECT_TRUE(is_text(d->code) && codes.insert(d->code).second) << d->code;
    });
    EXPECT_EQ(names.size(), 73U);
    EXPECT_EQ(corvo_get_device(0), nullptr);
}

TEST(map_board_name, knows_legacy_models_by_their_first_radio)
{
    board b{};
    strcpy(b.name, "own");
    b.system_id = 1;
    b.radios[0].subsystem_id = 0x3009;
    EXPECT_STREQ(map_board_name(&b), "own") << "no radio";
    b.radio_count = 1;
    const std::string first = map_board_name(&b);
    b.radios[0].subsystem_id = 0x3005;
    const std::string second = map_board_name(&b);
    EXPECT_TRUE(first != "own" && second != "own" && first != second) << first << second;
    b.system_id = 2;
    EXPECT_STREQ(map_board_name(&b), "own");
}

TEST(firmware_tables, end_and_go_on_from_each_other)
{
    for (const fw_boardrev *table : {g_fw_boardrev_table_a, g_fw_boardrev_table_b, g_fw_boardrev_table_c}) {
        EXPECT_EQ(std::tuple(table[0].first, table[1].last, table[2].first), std::tuple(-1, 255, 256));
        EXPECT_EQ(table[0].last + 1, table[1].first) << "no revision between two rows";
        EXPECT_EQ(std::tuple(table[2].fw_version, table[2].last), std::tuple(0x00ffffffU, INT32_MAX));
    }
    for (const fw_part *table : {g_fw_flashvd_table_a, g_fw_bomrev_table_a, g_fw_flashjedec_table_a})
        EXPECT_EQ(std::tuple(table[2].fw_version, table[2].key), std::tuple(0x00ffffffU, UINT32_MAX));
    for (int row = 0; row < 3; row++)
        for (int i = 0; i <= row; i++) {
            const uint32_t oui = g_fw_oui_table[row].ouis[i];
            EXPECT_EQ(g_fw_oui_table[row].ouis[row + 1], 0U);
            EXPECT_EQ(oui, g_fw_oui_table[i].ouis[i]);
            EXPECT_EQ(oui >> 16 & 3, 2U) << "locally administered, of one device";
        }
    EXPECT_EQ(g_fw_oui_table[0].ouis[0], VEXA_OUI);
    EXPECT_EQ(std::tuple(g_fw_oui_table[3].fw_version, g_fw_oui_table[3].ouis),
              std::tuple(0x00ffffffU, static_cast<const uint32_t *>(nullptr)));
}
