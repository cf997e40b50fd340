// SPDX-License-Identifier: MIT
#pragma once

#include "output.h"

// Null when the device cannot tell.
json_ref process_documents(bool with_fds, const char *name = nullptr); // the library's; of those with that name, or all
json_ref memory_document();                                            // the library's
json_ref host_documents(size_t most);                                  // of the connection-tracking table, ranked

// a row for each socket of each process
json_ref socket_documents();

inline constexpr column process_columns[] = {
    {"pid", "PID", kind::number},       {"ppid", "Parent", kind::number}, {"stat", "State"},
    {"rss", "RSS kB", kind::number},    {"vsz", "Size kB", kind::number}, {"fd_count", "Files", kind::number},
    {"comm", "Name", kind::text, true},
};
inline constexpr column host_columns[] = {{"address", "Host"}, {"count", "Occurs", kind::number}};
