// SPDX-License-Identifier: MIT
#include "interface.h"
#include "report.h"

#include <algorithm>
#include <filesystem>

namespace {

json_t *bridge_port(const std::string &bridge, const std::string &port)
{
    static constexpr const char *states[] = {"disabled", "listening", "learning", "forwarding", "blocking"};
    const int state = get_br_port_state(bridge.c_str(), port.c_str());
    const bool known = state >= 0 && static_cast<size_t>(state) < std::size(states);
    return object(
        {{"bridge", text(bridge)}, {"port", text(port)}, {"state", known ? text(states[state]) : json_null()}});
}

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

section bridge_ports()
{
    static constexpr column columns[] = {{"bridge", "Bridge"}, {"port", "Port"}, {"state", "State"}};
    const std::filesystem::path net = "/sys/class/net";
    json_ref rows{list()};
    for (const std::string &bridge : names_in(net))
        for (const std::string &port : names_in(net / bridge / "brif"))
            append(rows.get(), bridge_port(bridge, port));
    return {"bridge_ports", "Bridge ports", {std::move(rows), columns}};
}

} // namespace

void report_interface(const report_source &, std::vector<section> &page)
{
    page.push_back(record_section("uplink", "Uplink", uplink_document(), uplink_columns));
    page.push_back({"interfaces", "Interfaces", {json_ref{interface_documents()}, interface_columns}});
    page.push_back(bridge_ports());
}
