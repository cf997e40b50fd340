// SPDX-License-Identifier: MIT
#pragma once

#include "wireless/driver.h"

// The work of get_stainfo() through a socket and a buffer that stations may share; its lines say so if there is none.
unique_malloc<stainfo> query_station(int sock, const char *vap, const uint8_t *mac, answer_buffer &answer);
