// SPDX-License-Identifier: MIT
#pragma once

#include "output.h"

json_t *identity_document(); // who the device is
inline constexpr column identity_columns[] = {
    {"model", "Model"},
    {"system_id", "System id"},
    {"firmware", "Firmware"},
    {"serial", "Serial number"},
    {"board_revision", "Revision"},
    {"bom_revision", "BOM revision"},
    {"mac", "Hardware address"},
    {"ethernet_ports", "Ethernet ports"},
    {"radios", "Radios"},
    {"poe_budget_w", "PoE budget (W)"},
    {"qr_code", "QR code"},
    {"accelerometer", "Accelerometer"},
};

json_ref port_documents(); // of the board's Ethernet ports
inline constexpr column port_columns[] = {
    {"group", "Group", kind::number},
    {"phy_idx", "PHY", kind::number},
    {"port_id", "Port", kind::number},
    {"main", "Main"},
    {"poe", "PoE"},
    {"label", "Label"},
};

json_ref radio_documents(); // of the board's radios
inline constexpr column radio_columns[] = {
    {"ifname", "Interface"},           {"chip", "Chip"},   {"bus_id", "Bus id"},
    {"subsystem", "Subsystem"},        {"bands", "Bands"}, {"tx_chains", "TX", kind::number},
    {"rx_chains", "RX", kind::number},
};

// The models that have a board record, or every model that has a name.
json_ref model_table_documents(bool all);
inline constexpr column model_table_columns[] = {
    {"system_id", "Id"},
    {"name", "Model"},
    {"code", "Code"},
    {"platform", "Platform"},
    {"ethernet_ports", "Ports", kind::number},
    {"radios", "Radios", kind::number},
    {"min_firmware", "Firmware from"},
};

json_ref predicate_documents(); // the true ones first
inline constexpr column predicate_columns[] = {{"predicate", "Predicate"}, {"holds", "Holds"}};
