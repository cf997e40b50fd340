// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <vector>

struct finished {
    int status; // exit status, or 128 and the number of the signal
    std::string out;
    std::string err;
};

// Runs a program on the device to its end. A program without a slash is looked for on the path.
finished run_program(const std::vector<std::string> &arguments, const std::string &input = "");
