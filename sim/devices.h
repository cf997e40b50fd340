// SPDX-License-Identifier: MIT
#pragma once

#include <filesystem>
#include <string>
#include <vector>

namespace sim {

inline constexpr char default_device[] = "access-point";

// The folder of a device: `name` itself when it holds a slash, else a folder of the devices that came with this
// program.
std::filesystem::path find_device(const std::string &name);

struct device_entry {
    std::string name;
    std::string about; // one line
};

std::vector<device_entry> list_devices();

} // namespace sim
