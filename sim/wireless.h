// SPDX-License-Identifier: MIT
#pragma once

#include "sim/device_files.h"

namespace sim {

// What a device needs beside a description of its radios, for the driver to answer from it.
struct wireless {
    std::vector<device_file> files;
    std::string interfaces; // lines for `ip -batch`
};

// Nothing where there is no description. Throws when it cannot be read.
wireless read_wireless(const std::filesystem::path &description);

} // namespace sim
