// SPDX-License-Identifier: MIT
#include "reporting/service_url.h"

#include "core/deployment.h"
#include "core/format.h"

const char *crash_service()
{
    return deployment::crash_url[get_trel_env_limit_prod()];
}

const char *trace_service()
{
    return deployment::trace_url[get_trel_env_limit_prod()];
}

bool crash_url(const char *kind, char (&address)[crash_url_size])
{
    return format_whole(address, sizeof address, "%s/v1/%s", crash_service(), kind);
}
