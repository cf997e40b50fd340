// SPDX-License-Identifier: MIT
#pragma once

#include "document.h"

#include <string>
#include <string_view>

// a word that a shell reads back as the text: '...', or $'...' when it holds what a terminal does not show
std::string shell_quoted(std::string_view text);

// a name for a shell variable: lower case, "_" for what may not stand in one
std::string shell_name(std::string_view text);

// NAME='value' lines: one for each value of an object, or one line with all of them for each row of a list
std::string shell_lines(const json_t *document);

// NAME='value' lines of {key, value} rows, or of a single one; of equal names the first holds, as in a look-up
std::string shell_pairs(const json_t *rows);
