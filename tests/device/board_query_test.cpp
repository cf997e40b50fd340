// SPDX-License-Identifier: MIT
#include "tests/support/device.h"

TEST(get_main_phy, is_the_first_that_is_alone_or_labelled_so)
{
    const auto port = [](uint8_t phy, uint8_t id, const char *label) -> board_port {
        return {phy, id, 0, 0, {}, label};
    };
    const struct {
        const char *why;
        std::vector<std::vector<board_port>> groups;
        int port_id, phy_idx, count;
    } rows[] = {
        {"no port", {}, -1, -1, 0},
        {"one alone, whatever its label", {{port(7, 3, "Data")}}, 3, 7, 1},
        {"by its label", {{port(1, 1, "Data"), port(2, 2, "PoE In + Data"), port(3, 3, "Main")}}, 2, 2, 3},
        {"in the second group", {{port(1, 1, "Data"), port(2, 2, "PoE Out + Data")}, {port(9, 8, "Data")}}, 8, 9, 3},
        {"none", {{port(1, 1, "Data"), port(2, 2, "main")}}, -1, -1, 2},
    };
    for (const auto &row : rows) {
        board b{};
        for (const auto &ports : row.groups) {
            board_port_group &group = b.eth_groups[b.eth_group_count++];
            group.port_count = uint8_t(ports.size());
            std::ranges::copy(ports, group.ports);
        }
        update_cached_board(&b);
        EXPECT_EQ(std::tuple(get_main_phy_port_id(), get_main_phy_idx(), get_num_of_eth_ports()),
                  std::tuple(row.port_id, row.phy_idx, row.count))
            << row.why;
        EXPECT_EQ(get_phy_port_id_by_idx(row.phy_idx), row.port_id) << row.why;
    }
    update_cached_board(nullptr);
}

TEST(board_get_poe_budget, is_what_the_device_does_not_keep)
{
    board b{};
    update_cached_board(&b);
    for (const auto &[budget, reserved, left] : {std::array{0, 20, 0}, {15, 15, 0}, {30, 4, 26}, {65535, 0, 65535}}) {
        b.poe_budget = uint16_t(budget);
        b.poe_reserved = uint16_t(reserved);
        EXPECT_EQ(board_get_poe_budget(), left) << budget;
        EXPECT_EQ(board_has_poe(), left != 0) << budget;
    }
    update_cached_board(nullptr);
}
