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

json_t *gateway_document();
inline constexpr column gateway_columns[] = {
    {"address", "Gateway"},
    {"mac", "Its MAC"},
    {"device", "Default route"},
};

json_ref counter_document(const char *name); // null when the device cannot tell
inline constexpr column counter_columns[] = {
    {"name", "Interface"},
    {"up", "State", kind::on_off},
    {"mac", "Hardware address"},
    {"address", "Address"},
    {"netmask", "Netmask"},
    {"speed_mbit", "Mbit/s"},
    {"duplex", "Duplex"},
    {"rx_bytes", "Received", kind::bytes},
    {"rx_packets", "Packets received"},
    {"rx_multicast", "Multicast received"},
    {"rx_errors", "Receive errors"},
    {"rx_dropped", "Receive drops"},
    {"tx_bytes", "Sent", kind::bytes},
    {"tx_packets", "Packets sent"},
    {"tx_errors", "Send errors"},
    {"tx_dropped", "Send drops"},
};
