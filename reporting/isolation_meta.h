// SPDX-License-Identifier: MIT
#pragma once

#include "reporting/isolation_log.h"

// Fills in log.meta from its file, or makes it. 0 or an errno (logged).
int prepare_crash_log_meta(log_visit &log, int file, const char *uplink_model);

// Writes log.meta over what the file holds, which stays as it is when there is no room for it.
bool rewrite_meta(const log_visit &log, int file);
