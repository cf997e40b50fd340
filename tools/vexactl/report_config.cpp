// SPDX-License-Identifier: MIT
#include "report.h"

#include "arguments.h"
#include "config_check.h"

#include <algorithm>
#include <cstring>
#include <map>

// What the configuration says. Only the fields named here are shown, so that no key or passphrase ever is.

namespace {

enum class form {
    word,
    boolean,
    number, // -1 stands for none
};

// one member of a row, and where in the section it stands
struct field {
    const char *key;
    const char *postfix;
    form as = form::word;
};

json_t *field_value(const report_source &from, const std::string &key, form as)
{
    if (as == form::word)
        return text_or_null(from.keys.value(key));
    const int64_t value = as == form::boolean ? from.keys.boolean(key) : from.keys.integer(key);
    return value < 0 ? json_null() : as == form::boolean ? flag(value != 0) : number(value);
}

// where the rows of a section stand, by the entry that every row has: "radio.1", "radio.2"
std::vector<std::string> bases(const report_source &from, const std::string &prefix, const char *postfix)
{
    std::vector<std::string> found;
    const unique_cfg_it entries{get_cfg_section(from.cfg, postfix, nullptr, "%s", prefix.c_str())};
    for (const cfg_it *it = entries.get(); it; it = it->next)
        found.emplace_back(it->key, strlen(it->key) - strlen(postfix));
    return found;
}

json_ref section_rows(const report_source &from, const char *prefix, const char *postfix, std::span<const field> fields)
{
    json_ref rows{list()};
    for (const std::string &base : bases(from, prefix, postfix)) {
        json_t *row = object({});
        for (const field &f : fields)
            json_object_set_new(row, f.key, field_value(from, base + f.postfix, f.as));
        append(rows.get(), row);
    }
    return rows;
}

// one field of a section's rows by another one
std::map<std::string, const char *> by_device(const report_source &from, const char *prefix, const char *postfix)
{
    std::map<std::string, const char *> found;
    for (const std::string &base : bases(from, prefix, ".devname"))
        if (const char *value = from.keys.value(base + postfix))
            found.emplace(from.keys.value(base + ".devname"), value);
    return found;
}

json_t *found_or_null(const std::map<std::string, const char *> &by_name, const std::string &name)
{
    const auto found = by_name.find(name);
    return text_or_null(found == by_name.end() ? nullptr : found->second);
}

section configuration(const report_source &from)
{
    static constexpr column columns[] = {{"file", "File"}, {"entries", "Entries"}, {"findings", "Findings"}};
    const auto findings = static_cast<int64_t>(check_configuration(from.bytes).size());
    return record_section("configuration", "Configuration",
                          object({{"file", text(from.path)},
                                  {"entries", from.readable ? number(get_cfg_count(from.cfg)) : json_null()},
                                  {"findings", from.readable ? number(findings) : json_null()}}),
                          columns);
}

section radios(const report_source &from)
{
    static constexpr field fields[] = {
        {"device", ".devname"},
        {"enabled", ".status", form::boolean},
        {"standard", ".standard"},
        {"channel", ".channel"},
        {"power_dbm", ".txpower"},
        {"gain_dbi", ".antenna.gain"},
        {"dfs", ".dfs.status", form::boolean},
        {"country", ".country"},
        {"comment", ".comment"},
    };
    static constexpr column columns[] = {
        {"device", "Radio"},
        {"enabled", "State", kind::on_off},
        {"standard", "Standard"},
        {"channel", "Chan", kind::number},
        {"power_dbm", "Power", kind::number},
        {"gain_dbi", "Gain", kind::number},
        {"country", "Country"},
        {"comment", "Comment", kind::text, true},
    };
    return {
        "radios", "Radios (power in dBm, gain in dBi)", {section_rows(from, "radio.", ".devname", fields), columns}};
}

section networks(const report_source &from)
{
    static constexpr field fields[] = {
        {"ssid", ".ssid"},    {"device", ".devname"},         {"enabled", ".status", form::boolean},
        {"radio", ".parent"}, {"security", ".security.type"}, {"hidden", ".hide_ssid", form::boolean},
        {"usage", ".usage"},
    };
    static constexpr column columns[] = {
        {"ssid", "SSID", kind::text, true},
        {"device", "Device"},
        {"enabled", "State", kind::on_off},
        {"radio", "Radio"},
        {"security", "Security"},
        {"hidden", "Hidden"},
        {"usage", "Usage"},
        {"bridge", "Bridge"},
    };
    section made{"networks", "Networks", {section_rows(from, "wireless.", ".ssid", fields), columns}};
    const auto bridges = by_device(from, "aaa.", ".br.devname");
    for (size_t i = 0; i < json_array_size(made.body.document.get()); i++) {
        json_t *row = json_array_get(made.body.document.get(), i);
        const char *device = json_string_value(json_object_get(row, "device"));
        json_object_set_new(row, "bridge", found_or_null(bridges, device ? device : ""));
    }
    return made;
}

section bridges(const report_source &from)
{
    static constexpr field fields[] = {{"bridge", ".devname"}, {"enabled", ".status", form::boolean}};
    static constexpr column columns[] = {{"bridge", "Bridge"},
                                         {"enabled", "State", kind::on_off},
                                         {"ports", "Ports", kind::text, true},
                                         {"comment", "Comment", kind::text, true}};
    json_ref rows{list()};
    for (const std::string &base : bases(from, "bridge.", ".devname")) {
        json_t *row = object({});
        for (const field &f : fields)
            json_object_set_new(row, f.key, field_value(from, base + f.postfix, f.as));
        json_t *ports = list();
        for (const std::string &port : bases(from, base + ".port.", ".devname"))
            append(ports, text(from.keys.value(port + ".devname")));
        json_object_set_new(row, "ports", ports);
        json_object_set_new(row, "comment", text_or_null(from.keys.value(base + ".comment")));
        append(rows.get(), row);
    }
    return {"bridges", "Bridges", {std::move(rows), columns}};
}

section vlans(const report_source &from)
{
    static constexpr column columns[] = {{"vlan", "VLAN", kind::number},
                                         {"interfaces", "Interfaces", kind::text, true}};
    std::map<int64_t, json_t *> interfaces; // of each enabled VLAN
    for (const std::string &base : bases(from, "vlan.", ".id")) {
        const char *device = from.keys.value(base + ".devname");
        if (!device || from.keys.boolean(base + ".status") != 1)
            continue;
        json_t *&of_vlan = interfaces[from.keys.integer(base + ".id")];
        append(of_vlan ? of_vlan : of_vlan = list(), text(device));
    }
    json_ref rows{list()};
    for (const auto &[vlan, names] : interfaces)
        append(rows.get(), object({{"vlan", number(vlan)}, {"interfaces", names}}));
    return {"vlans", "VLANs", {std::move(rows), columns}};
}

// Every switch "name.status" is a service's, but those of the sections that describe the network.
section services(const report_source &from)
{
    static constexpr column columns[] = {{"name", "Service"}, {"enabled", "State"}};
    static constexpr const char *no_services[] = {"aaa",   "bridge", "netconf", "radio",   "resolv",
                                                  "route", "users",  "vlan",    "wireless"};
    std::map<std::string, bool> found;
    for (const cfg_entry *entry = from.cfg; entry; entry = entry->next) {
        const std::vector<std::string> parts = split(entry->key, '.');
        const int enabled = parts.size() == 2 && parts[1] == "status" ? from.keys.boolean(entry->key) : -1;
        if (enabled >= 0 &&
            std::find(std::begin(no_services), std::end(no_services), parts[0]) == std::end(no_services))
            found.emplace(parts[0], enabled != 0);
    }
    section made{"services", "Services", {json_ref{list()}, columns}};
    made.body.side_by_side = true;
    for (const auto &[name, enabled] : found)
        append(made.body.document.get(), object({{"name", text(name)}, {"enabled", flag(enabled)}}));
    return made;
}

json_t *limit(const report_source &from, json_t *network, const char *device, const char *direction,
              const char *through, const std::string &base)
{
    return object({{"network", network},
                   {"device", text(device)},
                   {"direction", text(direction)},
                   {"through", text_or_null(through)},
                   {"least_kbit", field_value(from, base + ".minspeed", form::number)},
                   {"most_kbit", field_value(from, base + ".maxspeed", form::number)}});
}

section limits(const report_source &from)
{
    static constexpr column columns[] = {{"network", "Network", kind::text, true},
                                         {"device", "Device"},
                                         {"direction", "Direction"},
                                         {"through", "Through"},
                                         {"least_kbit", "At least", kind::number},
                                         {"most_kbit", "At most", kind::number}};
    json_ref rows{list()};
    const auto networks = by_device(from, "wireless.", ".ssid");
    for (const std::string &base : bases(from, "qos.vap.", ".devname")) {
        const char *device = from.keys.value(base + ".devname");
        append(rows.get(), limit(from, found_or_null(networks, device), device, "down", nullptr, base + ".dwnlink"));
        for (const std::string &uplink : bases(from, base + ".uplink.", ".devname"))
            append(rows.get(), limit(from, found_or_null(networks, device), device, "up",
                                     from.keys.value(uplink + ".devname"), uplink));
    }
    const bool on = from.keys.boolean("qos.status") == 1 && from.keys.integer("qos.mode") > 0;
    return {"limits", on ? "Limits for a client (kbit/s)" : "Limits (switched off)", {std::move(rows), columns}};
}

} // namespace

void report_config(const report_source &from, std::vector<section> &page)
{
    for (const auto make : {radios, networks, bridges, vlans, services, limits, configuration})
        page.push_back(make(from));
}
