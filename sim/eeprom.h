// SPDX-License-Identifier: MIT
#pragma once

#include "sim/device_files.h"

namespace sim {

// The factory data of a device, from a file of what is not blank in it: lines of an offset, then bytes
// ("0010 00 00 00 15") or a text (`0020 "VX1"`), numbers in hexadecimal. Lines that begin with "#" are for people.
device_file read_factory_data(const std::filesystem::path &description);

} // namespace sim
