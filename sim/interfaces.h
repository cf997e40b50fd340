// SPDX-License-Identifier: MIT
#pragma once

#include <filesystem>
#include <string>

namespace sim {

// Brings the loopback interface up and runs the lines of `file`, if there is one, and more through `ip -batch`.
void make_interfaces(const std::filesystem::path &file, const std::string &more);

} // namespace sim
