// SPDX-License-Identifier: MIT
#pragma once

#include "sim/simulated_device.h"

#include <stdexcept>
#include <string>
#include <vector>

namespace sim {

extern const char help[];

struct wrong_usage : std::runtime_error {
    using std::runtime_error::runtime_error;
};

// What is to run, and on what.
struct request {
    options on;
    std::vector<std::string> failures; // lines of the radios' description
    bool cloud = false, bus = false;
    char **program = nullptr; // ends with a null pointer, and may be empty
};

std::vector<std::string> option_names();

// Throws wrong_usage.
request read_request(char **arguments);
request read_program(char **arguments); // one is there

} // namespace sim
