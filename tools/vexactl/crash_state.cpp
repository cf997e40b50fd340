// SPDX-License-Identifier: MIT
#include "crash_logs.h"

#include <libvexa.h>
#include <unistd.h>

namespace {

constexpr long analytics_anonymous = 2; // where nothing is said

bool is_there(const char *path)
{
    return access(path, R_OK) == 0;
}

} // namespace

json_ref crash_state()
{
    const long mode = freadlong("/var/run/system.analytics.mode", analytics_anonymous);
    return json_ref{object({
        {"oops", flag(has_oops())},
        {"reported", flag(is_there("/var/run/last-crashlog.sent"))},
        {"analytics", flag(mode != 0)},
        {"clock", flag(is_there("/var/run/ntp.ready"))},
        {"address", flag(is_there("/var/run/ipready.br0"))},
        {"dumps", flag(freadlong("/var/run/system.analytics.coredump", 0) == 1)},
        {"logs", number(int64_t(unfinished_logs()))},
    })};
}
