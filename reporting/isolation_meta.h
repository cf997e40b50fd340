// SPDX-License-Identifier: MIT
#pragma once

#include "reporting/isolation_log.h"

// Fills in log.meta from its file, or makes it. 0 or an errno (logged).
int prepare_crash_log_meta(log_visit &log, const char *uplink_model);

// Takes the room that another attempt to send may need. False without it: what cannot be noted would be sent for ever.
bool reserve_note(const log_visit &log);

// Writes log.meta over what its file holds, which stays as it is when there is no room for it.
bool rewrite_meta(const log_visit &log);
