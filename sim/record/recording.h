// SPDX-License-Identifier: MIT
#pragma once

#include <filesystem>

// The device that this process runs on, as a folder that vexa-sim can run programs on.
namespace sim {

class disguise;

// Throws sim::error for a folder that is there already or cannot be written.
void record_device(const std::filesystem::path &folder);

// The parts of it. What the device does not have is left out.
void record_files(disguise &, const std::filesystem::path &root);
void record_factory_data(disguise &, const std::filesystem::path &file);
void record_interfaces(disguise &, const std::filesystem::path &file);
void record_radios(disguise &, const std::filesystem::path &file);
void record_bus(disguise &, const std::filesystem::path &file);

void write_file(const std::filesystem::path &file, const std::string &content);

} // namespace sim
