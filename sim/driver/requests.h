// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <string_view>

namespace sim::driver {

// What a program can ask for, by number of ioctl. Those from `new_socket` on are the system calls before a request.
enum class request : uint32_t {
    sta_info = 0x8A20,
    get_macs = 0x8A21,
    node_stat = 0x8A22,
    radio_stat = 0x8A24,
    rate_limit = 0x8A25,
    scan_results = 0x8A27,
    dfs_wait = 0x8A29,
    antenna_gain = 0x8A2A,
    set = 0x8BE2,
    get_mode = 0x8B07,
    get_bssid = 0x8B15,
    get_essid = 0x8B1B,
    get_tx_power = 0x8B27,
    track_stations = 0x80185502,
    track_statistics = 0xC0185501,
    track_key_id = 0x40305503,
    track_probe_frame = 0x80185504,
    new_socket = 1,
    opened,
};

// nullptr for what is none of the driver's.
const char *name_of(request);
// 0 for a name that nothing has.
request request_of(std::string_view name);

} // namespace sim::driver
