// SPDX-License-Identifier: MIT
#include "system.h"

#include <iterator>

namespace {

constexpr char default_file[] = "/proc/vexahal/status/IsDefault";
constexpr int release_build = 1;

json_t *uptime_text(long seconds)
{
    char written[32] = "";
    if (seconds < 0 || uptime2str(static_cast<unsigned long>(seconds), written, sizeof written) < 0)
        return json_null();
    return text(written);
}

json_t *local_time()
{
    char written[32] = "";
    return get_system_time_str(written, sizeof written) == 0 ? text(written) : json_null();
}

} // namespace

json_t *internet_status()
{
    const int internet = system_internet_status();
    return internet < 0 ? json_null() : flag(internet != 0);
}

json_t *dhcp_status()
{
    static constexpr const char *leases[] = {"unknown", "deconfig", "leasefail", "bound", "renew"};
    return text(leases[system_dhcp_status()]);
}

json_t *system_document()
{
    const long uptime = get_uptime_from_proc();
    return object({{"uptime_s", uptime < 0 ? json_null() : number(uptime)},
                   {"uptime", uptime_text(uptime)},
                   {"time", local_time()},
                   {"is_default", flag(system_is_xxx(default_file, 0) == 1)},
                   {"ssh", flag(system_is_ssh() == 1)},
                   {"internet", internet_status()},
                   {"dhcp", dhcp_status()}});
}

json_t *environment_document(cfg_entry *cfg)
{
    static constexpr const char *modes[] = {"nothing", "everything", "without names"};
    static constexpr const char *environments[] = {"production", "staging", "development"};
    return object({{"configured", text(environments[get_trel_env()])},
                   {"environment", text(environments[get_trel_env_limit_prod()])},
                   {"release", flag(get_vexa_scm_reftype() == release_build)},
                   {"reports", text(modes[get_analytics_mode(cfg)])},
                   {"core_dumps", flag(get_analytics_coredump_mode(cfg) == 1)}});
}

json_ref service_documents()
{
    static constexpr struct {
        const char *name;
        int dev_status::*flag;
    } services[] = {
        {"dhcpc", &dev_status::dhcpc},       {"dhcpd", &dev_status::dhcpd},       {"ppp", &dev_status::ppp},
        {"iptables", &dev_status::iptables}, {"ebtables", &dev_status::ebtables},
    };
    dev_status status{};
    (void)fill_services(&status); // always answers
    json_ref rows{list()};
    for (const auto &service : services)
        append(rows.get(), object({{"name", text(service.name)}, {"enabled", flag(status.*service.flag != 0)}}));
    return rows;
}
