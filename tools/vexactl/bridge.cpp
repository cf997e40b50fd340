// SPDX-License-Identifier: MIT
#include "bridge.h"

#include "message.h"

#include <algorithm>
#include <filesystem>
#include <libvexa.h>
#include <net/if.h>

namespace {

constexpr size_t port_at = 6; // of a forwarding entry

// the names in a folder of the kernel's, sorted; nothing when it is not there
std::vector<std::string> names_in(const std::filesystem::path &folder)
{
    std::vector<std::string> names;
    std::error_code failed;
    for (auto it = std::filesystem::directory_iterator{folder, failed}; !failed && it != end(it); it.increment(failed))
        names.push_back(it->path().filename());
    std::sort(names.begin(), names.end());
    return names;
}

json_t *state_of(const std::string &bridge, const std::string &port)
{
    static constexpr const char *states[] = {"disabled", "listening", "learning", "forwarding", "blocking"};
    const int state = get_br_port_state(bridge.c_str(), port.c_str());
    const bool known = state >= 0 && static_cast<size_t>(state) < std::size(states);
    return known ? text(states[state]) : json_null();
}

struct fdb_rows {
    const std::string &bridge;
    json_ref rows{list()};
    std::map<unsigned, std::string> port_names = {}; // by number, each asked for once

    json_t *name_of(unsigned number)
    {
        const auto [port, is_new] = port_names.try_emplace(number);
        char name[IFNAMSIZ] = "";
        if (is_new && get_ifname_from_br_portno(bridge.c_str(), number, name) == 1)
            port->second = name;
        return port->second.empty() ? json_null() : text(port->second);
    }

    static void add(void *self, const uint8_t *record, const char *)
    {
        auto *to = static_cast<fdb_rows *>(self);
        append(to->rows.get(), object({{"bridge", text(to->bridge)},
                                       {"mac", text(mac_text(record))},
                                       {"port_number", number(record[port_at])},
                                       {"port", to->name_of(record[port_at])}}));
    }
};

} // namespace

bridge_map find_bridges()
{
    const std::filesystem::path net = "/sys/class/net";
    bridge_map bridges;
    for (const std::string &name : names_in(net))
        if (std::error_code failed; std::filesystem::is_directory(net / name / "brif", failed))
            bridges.emplace(name, names_in(net / name / "brif"));
    return bridges;
}

json_ref bridge_port_documents(const bridge_map &bridges)
{
    json_ref rows{list()};
    for (const auto &[bridge, ports] : bridges)
        for (const std::string &port : ports)
            append(rows.get(),
                   object({{"bridge", text(bridge)}, {"port", text(port)}, {"state", state_of(bridge, port)}}));
    return rows;
}

// A walk through "br0" takes in "br0.20" too, whose ports are therefore left out.
json_ref fdb_documents(const std::string &bridge, const bridge_map &bridges)
{
    std::vector<const char *> exclude;
    for (const auto &[other, ports] : bridges)
        if (other.starts_with(bridge + "."))
            for (const std::string &port : ports)
                exclude.push_back(port.c_str());
    exclude.push_back(nullptr);
    fdb_rows found{bridge};
    (void)fdb_foreach(bridge.c_str(), exclude.data(), fdb_rows::add, &found); // the bridge's folder was there
    return std::move(found.rows);
}
