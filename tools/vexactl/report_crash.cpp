// SPDX-License-Identifier: MIT
#include "crash_logs.h"
#include "report.h"

void report_crash(const report_source &, std::vector<section> &page)
{
    page.push_back(record_section("crash", "Reports to the cloud", crash_state().release(), crash_columns));
    page.push_back({"isolation_logs", "Isolation logs", {isolation_logs(), isolation_columns}});
}
