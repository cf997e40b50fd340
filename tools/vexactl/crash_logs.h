// SPDX-License-Identifier: MIT
#pragma once

#include "output.h"

// The isolation logs of the device in the order of their names, as their writer and the library left them. Nothing is
// changed to find out.
json_ref isolation_logs();

inline constexpr column isolation_columns[] = {{"name", "Log", kind::text, true},
                                               {"bytes", "Size", kind::bytes},
                                               {"posted", "Posted", kind::on_off},
                                               {"attempts", "Failed attempts", kind::number},
                                               {"finished", "Finished", kind::on_off}};

// how many of them the consumer has not finished
size_t unfinished_logs();

// What there is to report, and whether it may go out.
json_ref crash_state();

inline constexpr column crash_columns[] = {
    {"oops", "Kernel crash kept", kind::on_off}, {"reported", "Reported", kind::on_off},
    {"analytics", "Analytics", kind::on_off},    {"clock", "Clock set", kind::on_off},
    {"address", "Address", kind::on_off},        {"dumps", "Dumps are uploaded", kind::on_off},
    {"logs", "Isolation logs", kind::number},
};
