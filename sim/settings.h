// SPDX-License-Identifier: MIT
#pragma once

#include <string>

// The description of the radios on a device, which programs see with their next request.

namespace sim {

// "station.02:57:00:00:00:02.rssi=-84" as a line of the description; throws std::invalid_argument.
std::string line_of_setting(const std::string &setting);

// "GETMACS=E2BIG", likewise.
std::string line_of_failure(const std::string &failure);

// Adds a line to the description of the device that this process is on.
void describe(const std::string &line);

} // namespace sim
