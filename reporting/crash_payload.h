// SPDX-License-Identifier: MIT
#pragma once

#include "core/owner.h"

// What every report begins with: the device, and the output of a command unless that is null. Null without memory.
json_ref crash_payload(const char *capture_command, bool with_system_cfg = false);
