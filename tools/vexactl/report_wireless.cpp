// SPDX-License-Identifier: MIT
#include "report.h"
#include "wireless.h"

void report_wireless(const report_source &, std::vector<section> &page)
{
    page.push_back({"vaps", "Wireless interfaces", {vap_documents(), vap_columns}});
}
