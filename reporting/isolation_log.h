// SPDX-License-Identifier: MIT
#pragma once

#include "core/owner.h"

// A kind of logs that another component leaves in persistent storage, and where they are kept; directories with a slash
// at the end.
struct log_kind {
    const char *name;
    const char *logs;
    const char *meta;     // one JSON object per log, under the log's name
    const char *finished; // one empty file per log that is done with
};

inline constexpr log_kind vwire_disconnect{
    "vwire_disconnect",
    "/etc/persistent/isolation_logs/",
    "/etc/persistent/isolation_logs/meta/",
    "/etc/persistent/isolation_logs_sent/",
};

// Whether the meta file is written anew. A failed attempt alone is not worth a save of the persistent storage.
enum class rewrite { none, retry_only, changed };

// A log while its meta file is locked.
struct log_visit {
    const log_kind &kind;
    const char *name;
    int directory; // of the logs
    int file = -1; // of its meta
    json_ref meta = {};
    rewrite save = rewrite::none;
    bool stop = false;
};

// What a pass does with each log that is not finished. 0, or the errno of what went wrong with this log.
using log_action = int (*)(log_visit &log, void *argument);

// Goes over the logs, several processes at once if they like; a log without meta gets it. 0 however single logs fared;
// -1 when a directory cannot be made.
int iterate_crash_logs(const log_kind &kind, const char *uplink_model, log_action action, void *argument);

// A log as people and JSON texts name it: bytes that are no UTF-8 are U+FFFD.
bool is_named(const log_visit &log, const char *name);
