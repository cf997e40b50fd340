// SPDX-License-Identifier: MIT
#include "interface.h"
#include "report.h"

void report_interface(const report_source &, std::vector<section> &page)
{
    static constexpr column uplink[] = {{"state", "State"}, {"device", "Device"}};
    static constexpr column interfaces[] = {
        {"name", "Interface"}, {"up", "State", kind::on_off}, {"address", "Address"}};
    page.push_back({"uplink", "Uplink", {json_ref{uplink_document()}, uplink}});
    page.push_back({"interfaces", "Interfaces", {json_ref{interface_documents()}, interfaces}});
}
