// SPDX-License-Identifier: MIT
#pragma once

#include "sim/driver/record.h"
#include "sim/driver/requests.h"

#include <deque>
#include <optional>
#include <string>

namespace sim::driver {

struct radio {
    std::string name;
    record statistics;
    moving_value dfs_wait, antenna_gain;
    bytes neighbours; // scan entries, back to back
    struct moving_entry {
        size_t at;
        record head;
    };
    std::vector<moving_entry> heads;
};

struct station {
    mac address;
    record info, node, tracking;
    bytes probe_frame;
    bool known; // to the driver; the tracker knows all
};

struct vap {
    std::string name, usage, ssid;
    mac bssid;
    uint32_t mode;
    int32_t power; // dBm
    const radio *its_radio;
    std::vector<mac> stations; // as they are listed

    bool is_link() const { return usage == "uplink" || usage == "downlink"; } // between access points
};

// A request that goes wrong, on one interface or on all ("").
struct fault {
    request what;
    std::string on;
    int number;     // of the error
    uint32_t below; // only while the caller's buffer is smaller
};

// An answer that is not what the driver would say.
struct forgery {
    request what;
    std::string on;
    std::optional<bytes> content;
    std::optional<size_t> cut;      // no more bytes than these
    std::optional<uint32_t> length; // said to be used
};

// The radios of a device, who is connected and what can be heard.
struct description {
    std::deque<radio> radios;
    std::vector<vap> vaps;
    std::vector<station> stations; // by address
    std::vector<fault> faults;
    std::vector<forgery> forgeries;
    std::optional<double> stopped_at; // seconds: the time does not pass
    bool logs_all = false;            // and not only what changes something

    const vap *find_vap(std::string_view name) const;
    const station *find_station(const mac &) const;
    const fault *find_fault(request, std::string_view on, uint32_t length) const;
    const forgery *find_forgery(request, std::string_view on) const;
};

// What cannot be read is thrown as sim::error, with the line.
description read_description(std::string_view text);

} // namespace sim::driver
