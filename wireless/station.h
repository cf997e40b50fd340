// SPDX-License-Identifier: MIT
#pragma once

#include "core/owner.h"

// The work of get_stainfo() through a socket that stations may share; its lines say so if there is none.
unique_malloc<stainfo> query_station(int sock, const char *vap, const uint8_t *mac);
