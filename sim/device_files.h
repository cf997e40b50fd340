// SPDX-License-Identifier: MIT
#pragma once

#include <filesystem>
#include <string>
#include <sys/types.h>
#include <vector>

namespace sim {

struct device_file {
    std::filesystem::path place; // on the device
    std::string content;         // of a link: where it leads
    mode_t mode;
    bool is_link;
};

std::string read_file(const std::filesystem::path &file);

// All files and links below `root`, which stands for the device's "/".
std::vector<device_file> read_device_files(const std::filesystem::path &root);

} // namespace sim
