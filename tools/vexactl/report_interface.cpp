// SPDX-License-Identifier: MIT
#include "bridge.h"
#include "interface.h"
#include "lldp.h"
#include "report.h"

void report_interface(const report_source &, std::vector<section> &page)
{
    page.push_back(record_section("uplink", "Uplink", uplink_document(), uplink_columns));
    page.push_back({"interfaces", "Interfaces", {json_ref{interface_documents()}, interface_columns}});
    page.push_back({"bridge_ports", "Bridge ports", {bridge_port_documents(find_bridges()), bridge_port_columns}});
    json_ref neighbours = neighbour_documents();
    page.push_back(
        {"neighbours", "Neighbours", {neighbours ? std::move(neighbours) : json_ref{list()}, neighbour_columns}});
}
