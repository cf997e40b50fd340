// SPDX-License-Identifier: MIT
#pragma once

#include "output.h"

// Each asks the daemon anew; null when it cannot be asked.
json_ref neighbour_documents(); // the library's
json_ref switch_document();     // behind the main port, or a wireless uplink

inline constexpr column neighbour_columns[] = {
    {"local_port_name", "Port"}, {"chassis_id", "Neighbour"}, {"chassis_descr", "What it is", kind::text, true},
    {"port_id", "Its port"},     {"port_descr", "Its name"},
};
inline constexpr column switch_columns[] = {
    {"description", "Main port"},
    {"vendor", "Vendor"},
    {"uplink_description", "Wireless uplink"},
};
