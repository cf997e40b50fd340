// SPDX-License-Identifier: MIT
#include "report.h"

#include "arguments.h"
#include "config_check.h"

#include <algorithm>
#include <cstring>

// What the configuration says. Only the fields named here are shown, so that no key or passphrase ever is.

namespace {

// one member of a row, and where in the section it stands
struct field {
    const char *key;
    const char *postfix;
    bool is_boolean = false;
};

json_t *boolean_or_null(int value)
{
    return value < 0 ? json_null() : flag(value != 0);
}

json_t *field_value(const report_source &from, const std::string &base, const field &f)
{
    return f.is_boolean ? boolean_or_null(from.keys.boolean(base + f.postfix))
                        : text_or_null(from.keys.value(base + f.postfix));
}

// a row for each number of a section, found by the entry that every row has
json_ref section_rows(const report_source &from, const char *prefix, const char *postfix, std::span<const field> fields)
{
    json_ref rows{list()};
    const unique_cfg_it found{get_cfg_section(from.cfg, postfix, nullptr, "%s", prefix)};
    for (const cfg_it *it = found.get(); it; it = it->next) {
        const std::string base{it->key, strlen(it->key) - strlen(postfix)};
        json_t *row = object({});
        for (const field &f : fields)
            json_object_set_new(row, f.key, field_value(from, base, f));
        append(rows.get(), row);
    }
    return rows;
}

section configuration(const report_source &from)
{
    static constexpr column columns[] = {{"file", "File"}, {"entries", "Entries"}, {"findings", "Findings"}};
    return {"configuration",
            "Configuration",
            {json_ref{object({{"file", text(from.path)},
                              {"entries", number(get_cfg_count(from.cfg))},
                              {"findings", number(static_cast<int64_t>(check_configuration(from.bytes).size()))}})},
             columns}};
}

section radios(const report_source &from)
{
    static constexpr field fields[] = {
        {"device", ".devname"}, {"enabled", ".status", true}, {"mode", ".mode"},       {"channel", ".channel"},
        {"width", ".cwm.mode"}, {"power", ".txpower"},        {"country", ".country"},
    };
    static constexpr column columns[] = {
        {"device", "Device"},   {"enabled", "State", kind::on_off},
        {"mode", "Mode"},       {"channel", "Channel"},
        {"width", "Width"},     {"power", "Power"},
        {"country", "Country"},
    };
    return {"radios", "Radios", {section_rows(from, "radio.", ".devname", fields), columns}};
}

section networks(const report_source &from)
{
    static constexpr field fields[] = {
        {"ssid", ".ssid"},    {"device", ".devname"},         {"enabled", ".status", true},
        {"radio", ".parent"}, {"security", ".security.type"}, {"hidden", ".hide_ssid", true},
    };
    static constexpr column columns[] = {
        {"ssid", "SSID", kind::text, true}, {"device", "Device"},
        {"enabled", "State", kind::on_off}, {"radio", "Radio"},
        {"security", "Security"},           {"hidden", "Hidden"},
    };
    return {"networks", "Networks", {section_rows(from, "wireless.", ".ssid", fields), columns}};
}

section limits(const report_source &from)
{
    static constexpr field fields[] = {
        {"device", ".devname"},          {"down_max_kbit", ".dwnlink.maxspeed"}, {"down_min_kbit", ".dwnlink.minspeed"},
        {"uplink", ".uplink.1.devname"}, {"up_max_kbit", ".uplink.1.maxspeed"},  {"up_min_kbit", ".uplink.1.minspeed"},
    };
    static constexpr column columns[] = {
        {"device", "Device"}, {"down_max_kbit", "Down max", kind::number}, {"down_min_kbit", "Min", kind::number},
        {"uplink", "Uplink"}, {"up_max_kbit", "Up max", kind::number},     {"up_min_kbit", "Min", kind::number},
    };
    return {"limits", "Limits (kbit/s)", {section_rows(from, "qos.vap.", ".devname", fields), columns}};
}

// Every switch "name.status" is a service's, but those of the sections above.
section services(const report_source &from)
{
    static constexpr column columns[] = {{"name", "Service"}, {"enabled", "State"}};
    static constexpr const char *no_services[] = {"radio", "wireless", "bridge", "vlan", "netconf", "aaa"};
    json_ref rows{list()};
    for (const cfg_entry *entry = from.cfg; entry; entry = entry->next) {
        const std::vector<std::string> parts = split(entry->key, '.');
        if (parts.size() != 2 || parts[1] != "status" ||
            std::find(std::begin(no_services), std::end(no_services), parts[0]) != std::end(no_services))
            continue;
        const int enabled = from.keys.boolean(entry->key);
        if (enabled >= 0)
            append(rows.get(), object({{"name", text(parts[0])}, {"enabled", flag(enabled != 0)}}));
    }
    section made{"services", "Services", {std::move(rows), columns}};
    made.body.side_by_side = true;
    return made;
}

} // namespace

void report_config(const report_source &from, std::vector<section> &page)
{
    for (const auto make : {configuration, radios, networks, services, limits})
        page.push_back(make(from));
}
