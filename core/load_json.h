// SPDX-License-Identifier: MIT
#pragma once

#include <jansson.h>
#include <string_view>

// A new value from a JSON text of another program; NULL with @error filled. What nests deeper than 64 levels is refused
// before it is parsed, for parsing, copying and writing it take stack at each level.
json_t *load_json(std::string_view text, json_error_t &error);
