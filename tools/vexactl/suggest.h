// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <string_view>
#include <vector>

// "; did you mean 'list'?" when one of the words is near enough to be meant, else empty
std::string did_you_mean(std::string_view word, const std::vector<std::string> &words, const std::string &prefix);

// "a, b, c"
std::string joined(const std::vector<std::string> &words);
