// SPDX-License-Identifier: MIT
#include "board.h"
#include "report.h"
#include "system.h"

// Who the device is, how it stands, and what it tells of itself.
void report_device(const report_source &from, std::vector<section> &page)
{
    page.push_back(record_section("device", "Device", identity_document(), identity_columns));
    page.push_back(record_section("status", "Status", system_document(), system_columns_besides_uplink));
    page.push_back(record_section("environment", "Environment", environment_document(from.cfg), environment_columns));
}
