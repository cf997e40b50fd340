// SPDX-License-Identifier: MIT
#include "report.h"

#include "text.h"

#include <cstring>

// Who the device is, and how it is managed.

namespace {

constexpr char board_file[] = "/proc/vexahal/board";
constexpr char default_file[] = "/proc/vexahal/status/IsDefault";

json_t *serial_number()
{
    char serial[64] = "";
    if (get_boardsn(board_file, serial, sizeof serial) < 0)
        return json_null();
    serial[strcspn(serial, "\n")] = '\0';
    return text(serial);
}

json_t *firmware_version()
{
    const char *version = nullptr;
    return get_version(&version) == 0 ? text(version) : json_null();
}

json_t *uptime_text(long seconds)
{
    char written[32] = "";
    if (seconds < 0 || uptime2str(static_cast<unsigned long>(seconds), written, sizeof written) < 0)
        return json_null();
    return text(written);
}

json_t *local_time()
{
    char written[32] = "";
    return get_system_time_str(written, sizeof written) == 0 ? text(written) : json_null();
}

json_t *number_or_null(int64_t value)
{
    return value < 0 ? json_null() : number(value);
}

section identity()
{
    static constexpr column columns[] = {
        {"model", "Model"},
        {"system_id", "System id"},
        {"firmware", "Firmware"},
        {"serial", "Serial number"},
        {"board_revision", "Revision"},
        {"mac", "Hardware address"},
        {"ethernet_ports", "Ethernet ports"},
        {"radios", "Radios"},
        {"poe_budget_w", "PoE budget (W)"},
        {"uptime", "Up for"},
        {"time", "Local time"},
    };
    const board *b = board_identify();
    const long uptime = get_uptime_from_proc();
    return record_section("device", "Device",
                          object({{"model", text(map_board_name(b))},
                                  {"platform", text(b->platform)},
                                  {"system_id", text(format("%04x", b->system_id))},
                                  {"firmware", firmware_version()},
                                  {"serial", serial_number()},
                                  {"board_revision", number_or_null(get_boardrevision(board_file))},
                                  {"mac", text(get_main_mac_str())},
                                  {"ethernet_ports", number(get_num_of_eth_ports())},
                                  {"radios", number(b->radio_count)},
                                  {"poe_budget_w", number(board_get_poe_budget())},
                                  {"uptime_s", number_or_null(uptime)},
                                  {"uptime", uptime_text(uptime)},
                                  {"time", local_time()}}),
                          columns);
}

section management(const report_source &from)
{
    static constexpr column columns[] = {
        {"is_default", "Factory settings"}, {"ssh", "SSH listens"},
        {"environment", "Environment"},     {"reports", "Reports"},
        {"core_dumps", "Core dumps"},
    };
    static constexpr const char *modes[] = {"nothing", "everything", "without names"};
    static constexpr const char *environments[] = {"production", "staging", "development"};
    return record_section("management", "Management",
                          object({{"is_default", flag(system_is_xxx(default_file, 0) == 1)},
                                  {"ssh", flag(system_is_ssh() == 1)},
                                  {"environment", text(environments[get_trel_env_limit_prod()])},
                                  {"reports", text(modes[get_analytics_mode(from.cfg)])},
                                  {"core_dumps", flag(get_analytics_coredump_mode(from.cfg) == 1)}}),
                          columns);
}

} // namespace

void report_device(const report_source &from, std::vector<section> &page)
{
    page.push_back(identity());
    page.push_back(management(from));
}
