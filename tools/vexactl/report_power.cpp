// SPDX-License-Identifier: MIT
#include "power.h"
#include "report.h"

#include <libvexa.h>

void report_power(const report_source &, std::vector<section> &page)
{
    const json_ref outlets{vexa_outlet_get_outlet_status_json(0)};
    json_t *table = json_object_get(outlets.get(), "outlet_table");
    json_ref supplies{vexa_psu_get_json_psu_table(0)};
    page.push_back(
        {"power_supplies", "Power supplies", {supplies ? std::move(supplies) : json_ref{list()}, psu_columns}});
    page.push_back({"outlets", "Power outlets", {json_ref{table ? json_incref(table) : list()}, outlet_columns}});
}
