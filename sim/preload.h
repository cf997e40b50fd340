// SPDX-License-Identifier: MIT
#pragma once

#include "sim/device_files.h"

namespace sim {

// The stand-in Wi-Fi driver, which came with this program.
std::filesystem::path find_driver();

// Its place on a device with radios.
device_file driver_file(const std::filesystem::path &driver);

// Makes it answer in every program that this process starts.
void preload();

} // namespace sim
