// SPDX-License-Identifier: MIT
#include "report.h"
#include "satisfaction.h"
#include "wireless.h"

void report_wireless(const report_source &, std::vector<section> &page)
{
    page.push_back({"vaps", "Wireless interfaces", {vap_documents(), vap_columns}});
    satisfaction_cycle now = satisfaction{}.next();
    page.push_back({"air", "On the air", {std::move(now.radios), radio_columns}});
    page.push_back({"clients",
                    "Clients, worst first",
                    {std::move(now.clients), client_columns},
                    {plot::shape::bars, "name", "score", 100}});
    page.push_back({"networks_heard",
                    "Networks in the air, strongest first",
                    {network_documents(nullptr), network_columns},
                    {plot::shape::counts, "frequency_mhz", " MHz"}});
}
