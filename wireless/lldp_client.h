// SPDX-License-Identifier: MIT
#pragma once

#include "core/owner.h"

inline constexpr int lldp_silence = 1;

// Asks the LLDP daemon through its command-line client. Returns 0 with what the client printed, up to 16383 bytes of
// it; `lldp_silence` when it does not go on for two seconds; else the negative code of the log.
int ask_lldp(unique_text &answer);
