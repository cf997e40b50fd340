// SPDX-License-Identifier: MIT
#include "tests/support/device.h"

TEST(get_main_phy, is_the_first_that_is_alone_or_labelled_so)
{
    const auto port = [](uint8_t phy, uint8_t id, const char *label) -> board_port {
        return {phy, id, 0, 0, {}, label};
    };
    const auto main_of = [](const std::vector<std::vector<board_port>> &groups) {
        board b{};
        for (const auto &ports : groups) {
            board_port_group &group = b.eth_groups[b.eth_group_count++];
            group.port_count = uint8_t(ports.size());
            std::ranges::copy(ports, group.ports);
        }
        update_cached_board(&b);
        EXPECT_EQ(get_phy_port_id_by_idx(get_main_phy_idx()), get_main_phy_port_id());
        const std::array answer{get_main_phy_port_id(), get_main_phy_idx(), get_num_of_eth_ports()};
        update_cached_board(nullptr);
        return answer;
    };
    EXPECT_EQ(main_of({}), (std::array{-1, -1, 0}));
    EXPECT_EQ(main_of({{port(7, 3, "Data")}}), (std::array{3, 7, 1})) << "alone, whatever its label";
    EXPECT_EQ(main_of({{port(1, 1, "Data"), port(2, 2, "PoE In + Data"), port(3, 3, "Main")}}), (std::array{2, 2, 3}));
    EXPECT_EQ(main_of({{port(1, 1, "Data"), port(2, 2, "PoE Out + Data")}, {port(9, 8, "Data")}}),
              (std::array{8, 9, 3}));
    EXPECT_EQ(main_of({{port(1, 1, "Data"), port(2, 2, "main")}}), (std::array{-1, -1, 2}));
}

TEST(board_get_poe_budget, is_what_the_device_does_not_keep)
{
    board b{};
    update_cached_board(&b);
    for (const auto &[budget, reserved, left] : {std::array{0, 20, 0}, {15, 15, 0}, {30, 4, 26}, {65535, 0, 65535}}) {
        b.poe_budget = uint16_t(budget);
        b.poe_reserved = uint16_t(reserved);
        EXPECT_EQ(std::pair(board_get_poe_budget(), board_has_poe()), std::pair(left, int(left != 0))) << budget;
    }
    update_cached_board(nullptr);
}
