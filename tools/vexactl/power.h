// SPDX-License-Identifier: MIT
#pragma once

#include "output.h"

// How people see the library's answers about outlets and power supplies.
inline constexpr column outlet_columns[] = {
    {"index", "Outlet", kind::number},      {"name", "Name", kind::text, true},
    {"relay_state", "Relay", kind::on_off}, {"outlet_voltage", "V", kind::number},
    {"outlet_current", "A", kind::number},  {"outlet_power", "W", kind::number},
    {"outlet_energy", "Wh", kind::number},
};
inline constexpr column psu_columns[] = {
    {"psu_idx", "Supply", kind::number},  {"name", "Name", kind::text, true},
    {"present", "Present", kind::on_off}, {"state", "State"},
    {"psu_voltage", "V", kind::number},   {"psu_current", "A", kind::number},
    {"psu_power", "W", kind::number},     {"psu_temperature", "deg C", kind::number},
};
