// SPDX-License-Identifier: MIT
#include "reporting/gate.h"

#include "core/paths.h"

#include <libvexa.h>
#include <unistd.h>

namespace {

constexpr char path_ntp_ready[] = "/var/run/ntp.ready";
constexpr char path_analytics_mode[] = "/var/run/system.analytics.mode";
constexpr long analytics_off = 0;
constexpr long analytics_anonymous = 2;

} // namespace

long analytics_mode()
{
    return freadlong(path_analytics_mode, analytics_anonymous);
}

bool reporting_allowed()
{
    return access(path_ntp_ready, R_OK) == 0 && access(path_ip_ready, R_OK) == 0 && analytics_mode() != analytics_off;
}
