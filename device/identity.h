// SPDX-License-Identifier: MIT
#pragma once

#include <libvexa.h>

// Sets what is particular to this device and known; the rest stays.
void complete_board(board &b);
