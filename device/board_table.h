// SPDX-License-Identifier: MIT
#pragma once

#include <libvexa.h>

// The records of the models, made from shorter rows when they are asked for: laid out in full they would cost each
// process 90 KiB of private memory.
board *find_board(uint16_t system_id);
board *find_board(const char *platform);
