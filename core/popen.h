// SPDX-License-Identifier: MIT
#pragma once

// Runs a command line to its end and drops what it prints. Its status as wait() gives it; -1 when it cannot be known.
int popen_status(const char *command);
