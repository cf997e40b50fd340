// SPDX-License-Identifier: MIT
#pragma once

enum exit_status {
    status_ok = 0,
    status_negative = 1,    // not found, or the answer is no
    status_usage = 2,       // the command line is wrong
    status_unavailable = 3, // the device cannot answer, or the answer cannot be written
};
