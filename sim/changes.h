// SPDX-License-Identifier: MIT
#pragma once

#include "sim/device_files.h"

#include <map>

namespace sim {

using device_state = std::map<std::filesystem::path, device_file>;

// Writes on standard output which files were added, removed and changed, and then how, as diff(1) does.
void show_changes(const device_state &before, const device_state &after);

} // namespace sim
