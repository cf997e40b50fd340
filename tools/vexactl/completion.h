// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <vector>

// What the last word of a command line may become; nothing where a file name may stand.
std::vector<std::string> candidates(std::vector<const char *> words);
