// SPDX-License-Identifier: MIT
#include "device/board_table.h"
#include "device/device_table.h"

#include <algorithm>
#include <cstddef>
#include <iterator>

static_assert(sizeof(board_port) == 8 + sizeof(void *));
static_assert(sizeof(board_port_group) == 57 * sizeof(board_port) - 8);
static_assert(sizeof(void *) != 8 || (sizeof(board_radio) == 32 && offsetof(board, radios) == 8256));
static_assert(sizeof(void *) != 8 || (offsetof(board, hw_rev) == 8400 && sizeof(board) == 8416));

namespace {

constexpr struct {
    char name[32];
    uint16_t system_id;
    uint16_t subsystem_id; // of the first radio
} legacy_models[] = {
    {"Jay Classic", 1, 0x3009},
    {"Kite Classic", 1, 0x3005},
};

} // namespace

extern "C" const board *corvo_get_board(uint16_t system_id)
{
    return find_board(system_id);
}

extern "C" const board *corvo_identify_platform(const char *platform)
{
    return find_board(platform);
}

extern "C" const board *board_identify_platform(const char *platform)
{
    return find_board(platform);
}

extern "C" const struct device *corvo_get_device(uint16_t system_id)
{
    const auto *row = std::ranges::find(device_table, system_id, &device::system_id);
    return row != std::end(device_table) ? row : nullptr;
}

extern "C" const struct device *device_identify_by_sysid(uint16_t system_id)
{
    return system_id != 0 ? corvo_get_device(system_id) : nullptr;
}

extern "C" const char *map_board_name(const board *b)
{
    if (b->radio_count > 0)
        for (const auto &legacy : legacy_models)
            if (legacy.system_id == b->system_id && legacy.subsystem_id == b->radios[0].subsystem_id)
                return legacy.name;
    return b->name;
}
