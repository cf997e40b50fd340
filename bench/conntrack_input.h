// SPDX-License-Identifier: MIT
#pragma once

#include <string>

// As many lines as the kernel writes them, of 241 bytes each. Few hosts have most of the flows.
std::string conntrack_lines(size_t count);
