// SPDX-License-Identifier: MIT
#pragma once

#include "core/owner.h"

// Asks a power object of the bus for its state: the answer as a JSON object with this member, or none (logged for the
// function named).
json_ref ask_status(const char *object, const char *member, const char *func);
