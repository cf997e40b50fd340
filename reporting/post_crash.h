// SPDX-License-Identifier: MIT
#pragma once

#include "core/owner.h"

// Posts a report and keeps a copy of it on the device. @answer, unless that is null, receives what the service says.
// 0, or -1 (logged).
int post_crash(const char *address, json_t *payload, json_ref *answer);
