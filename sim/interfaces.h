// SPDX-License-Identifier: MIT
#pragma once

#include <filesystem>

namespace sim {

// Brings the loopback interface up and runs the lines of `file`, if there is one, through `ip -batch`.
void make_interfaces(const std::filesystem::path &file);

} // namespace sim
