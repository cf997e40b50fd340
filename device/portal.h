// SPDX-License-Identifier: MIT
#pragma once

#include <libvexa.h>
#include <string_view>

inline constexpr char path_guest_portals[] = "/var/run/guest/portal";

// Whether a list, its items separated by line feeds or commas, holds an item as a whole.
bool list_has_item(buffer *list, std::string_view item);
