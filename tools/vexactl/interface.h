// SPDX-License-Identifier: MIT
#pragma once

#include "output.h"

json_t *interface_document(const char *name);
json_t *interface_documents(); // of all interfaces
inline constexpr column interface_columns[] = {
    {"name", "Interface"},
    {"up", "State", kind::on_off},
    {"link", "Link"},
    {"address", "Address"},
    {"speed_mbit", "Mbit/s", kind::number},
    {"rx_bytes", "Received", kind::bytes},
    {"tx_bytes", "Sent", kind::bytes},
};

json_t *uplink_document();
inline constexpr column uplink_columns[] = {
    {"state", "State"},
    {"device", "Device"},
    {"dhcp", "DHCP"},
    {"gateway", "Gateway"},
    {"gateway_mac", "Gateway's MAC"},
    {"internet", "Internet"},
};
