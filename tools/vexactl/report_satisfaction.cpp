// SPDX-License-Identifier: MIT
#include "report.h"
#include "satisfaction.h"

void report_satisfaction(const report_source &, std::vector<section> &page)
{
    satisfaction_cycle now = satisfaction{}.next();
    page.push_back({"air", "On the air", {std::move(now.radios), radio_columns}});
    page.push_back({"clients",
                    "Clients, worst first",
                    {std::move(now.clients), client_columns},
                    {plot::shape::bars, "name", "score", 100}});
}
