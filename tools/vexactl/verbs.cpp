// SPDX-License-Identifier: MIT
#include "verbs.h"

std::span<const verb_family> verb_table()
{
    static const verb_family families[] = {
        report_family,   board_family,        system_family,     config_family, interface_family, bridge_family,
        wireless_family, satisfaction_family, lldp_family,       qos_family,    inventory_family, portal_family,
        lock_family,     url_family,          http_family,       run_family,    wait_family,      discover_family,
        msg_family,      webrtc_family,       bus_family,        power_family,  envelope_family,  crash_family,
        trace_family,    log_family,          completion_family,
    };
    return families;
}

std::span<const option> common_options()
{
    static constexpr option options[] = {
        {"file", "PATH", "read this configuration instead of /tmp/system.cfg"},
        {"json", nullptr, "answer in JSON, errors too"},
        {"format", "FORMAT", "table for people, json, or kv: NAME='value' lines for a shell", "table|json|kv"},
        {"color", "WHEN", "auto (a terminal without NO_COLOR), always or never", "auto|always|never"},
        {"verbose", nullptr, "show the library's log on standard error; -vv shows more", nullptr, 'v'},
        {"help", nullptr, "show this", nullptr, 'h'},
        {"version", nullptr, "show the version"},
    };
    return options;
}
