// SPDX-License-Identifier: MIT
#pragma once

// Runs a command line to its end and drops what it prints. Its status as wait() gives it; -1 when it cannot be known.
int popen_status(const char *command);

// The same as a shell gives it: of a command that a signal ended, 128 and the signal's number.
int popen_exit_status(const char *command);
