// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <string_view>
#include <vector>

struct finding {
    size_t line; // from 1
    const char *problem;
    std::string key;
    std::string text;
};

// What is suspicious in the bytes of a configuration file, in the order of its lines.
std::vector<finding> check_configuration(std::string_view bytes);
