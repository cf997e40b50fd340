// SPDX-License-Identifier: MIT
#include "report.h"
#include "wireless.h"

void report_wireless(const report_source &, std::vector<section> &page)
{
    page.push_back({"vaps", "Wireless interfaces", {vap_documents(), vap_columns}});
    page.push_back({"networks",
                    "Networks in the air, strongest first",
                    {network_documents(nullptr), network_columns},
                    {plot::shape::counts, "frequency_mhz", " MHz"}});
}
