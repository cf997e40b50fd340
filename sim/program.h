// SPDX-License-Identifier: MIT
#pragma once

#include <filesystem>
#include <vector>

namespace sim {

// Where a program, and what it is likely to need, may stand: its own place and the folders on the search paths.
std::vector<std::filesystem::path> places_of(const char *program);

// Runs a program to its end and passes signals on to it. Returns its exit status, 128 and the number of the signal
// that ended it, 126 when it cannot be started or 127 when it is not there (both said on standard error).
int run_program(char *const *arguments);

} // namespace sim
