// SPDX-License-Identifier: MIT
#include "sim/driver/requests.h"

namespace sim::driver {

namespace {

constexpr struct {
    request number;
    const char *name;
} names[] = {
    {request::sta_info, "STA_INFO2"},
    {request::get_macs, "GETMACS"},
    {request::node_stat, "NODESTAT"},
    {request::radio_stat, "RADIOSTAT"},
    {request::rate_limit, "RATELIMIT"},
    {request::scan_results, "SCAN_RESULTS"},
    {request::dfs_wait, "DFSWAIT"},
    {request::antenna_gain, "ANTGAIN"},
    {request::set, "SET"},
    {request::get_mode, "SIOCGIWMODE"},
    {request::get_bssid, "SIOCGIWAP"},
    {request::get_essid, "SIOCGIWESSID"},
    {request::get_tx_power, "SIOCGIWTXPOW"},
    {request::track_stations, "GET_STATIONS"},
    {request::track_statistics, "GET_STATISTICS"},
    {request::track_key_id, "SET_KEYID"},
    {request::track_probe_frame, "GET_PROBE_FRAME"},
    {request::new_socket, "socket"},
    {request::opened, "open"},
};

} // namespace

const char *name_of(request r)
{
    for (const auto &n : names)
        if (n.number == r)
            return n.name;
    return nullptr;
}

request request_of(std::string_view name)
{
    for (const auto &n : names)
        if (n.name == name)
            return n.number;
    return request{};
}

} // namespace sim::driver
