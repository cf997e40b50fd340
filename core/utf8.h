// SPDX-License-Identifier: MIT
#pragma once

#include <jansson.h>
#include <string_view>

// Bytes of the UTF-8 character at the start of a text that is not empty; 0 when there is none.
size_t utf8_character(std::string_view text);

// A new JSON string of any bytes: those that are no UTF-8 become U+FFFD each, so that the text is never lost. NULL
// without memory.
json_t *json_text(std::string_view bytes);
