// SPDX-License-Identifier: MIT
#pragma once

#include "core/owner.h"

#include <string_view>

// Text from outside in a command line, so that nothing in it ever runs. New texts; null without memory.

// One word: the text itself when it holds nothing but letters, digits and "._+@,:=-", else in single quotes.
unique_text shell_word(std::string_view text);

// For a place between double quotes; a line feed becomes ".", which stands for any character in a pattern.
unique_text shell_double_quoted(std::string_view text);
