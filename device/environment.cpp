// SPDX-License-Identifier: MIT
#include "core/paths.h"
#include "core/text.h"

#include <cstring>
#include <libvexa.h>

extern "C" {
uint32_t inform_server_interval = 0;
int32_t has_inform_server_bool = 0;
}

namespace {

constexpr char path_stat_interval[] = "/proc/stat_interval";

enum analytics_mode { analytics_off = 0, analytics_on = 1, analytics_anonymous = 2 };
enum environment { production = 0, staging = 1, development = 2 };
constexpr int reftype_release = 1;

// A setting of at most seven characters: of the running configuration, else of the persistent one.
void read_setting(const char *key, const char *def, char (&value)[8])
{
    freadvalue(path_system_cfg, key, value, sizeof value, "");
    if (value[0] == '\0')
        freadvalue(path_mgmt_cfg, key, value, sizeof value, def);
}

} // namespace

extern "C" int get_analytics_mode(cfg_entry *cfg)
{
    const int anonymous = get_bool(cfg, -1, "system.analytics.anonymous");
    if (anonymous < 0) // who never chose stays anonymous, and so does who only switched it off
        return get_bool(cfg, 0, "system.analytics.status") ? analytics_on : analytics_anonymous;
    if (!get_bool(cfg, 1, "system.analytics.status"))
        return analytics_off;
    return anonymous ? analytics_anonymous : analytics_on;
}

extern "C" int get_analytics_coredump_mode(cfg_entry *cfg)
{
    return get_bool(cfg, 0, "system.analytics.coredump");
}

extern "C" int get_trel_env(void)
{
    char name[8];
    read_setting("mgmt.trel.env", "prod", name);
    if (strcmp(name, "dev") == 0)
        return development;
    return strcmp(name, "stage") == 0 ? staging : production;
}

extern "C" int get_trel_env_limit_prod(void)
{
    const int env = get_trel_env();
    const int reftype = get_vexa_scm_reftype();
    char force[8];
    read_setting("mgmt.trel.env.force", "0", force);
    const bool forced = begins_with(force, "1") || begins_with(force, "enable");
    const bool stays = forced || reftype == reftype_release || env != production;
    return stays ? env : development;
}

extern "C" int init_custom_interval_inform_server(unsigned interval)
{
    char status[16];
    freadvalue(path_system_cfg, "corvo.inform.hook.status", status, sizeof status, "disabled");
    has_inform_server_bool = strcmp(status, "enabled") == 0;
    if (!has_inform_server_bool)
        return 0;
    inform_server_interval = interval;
    return fwriteline(path_stat_interval, "%d", int(interval)) > 0 ? 0 : -1;
}

extern "C" unsigned get_custom_interval(void)
{
    return inform_server_interval;
}

extern "C" int has_qa_inform_server(void)
{
    return has_inform_server_bool;
}
