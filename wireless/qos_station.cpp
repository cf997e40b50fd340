// SPDX-License-Identifier: MIT
#include "core/list.h"
#include "core/log.h"
#include "core/popen.h"
#include "wireless/qos.h"

#include <cstdio>
#include <memory>
#include <unistd.h>

namespace {

constexpr auto &log_tag = qos_log_tag;
constexpr char custom_script[] = "/var/run/qos.custom_rates.sh";
constexpr char custom_command[] = "/bin/sh /var/run/qos.custom_rates.sh";

struct drop_stations {
    void operator()(vexa_list *stations) const noexcept { free_stalist(stations); }
};
using unique_stations = std::unique_ptr<vexa_list, drop_stations>;

bool read_mac(const char *text, uint8_t (&mac)[6])
{
    unsigned b[6];
    if (sscanf(text, "%02x:%02x:%02x:%02x:%02x:%02x", &b[0], &b[1], &b[2], &b[3], &b[4], &b[5]) != 6)
        return false;
    for (size_t i = 0; i < 6; i++)
        mac[i] = uint8_t(b[i]);
    return true;
}

int64_t minimum_within(int64_t minimum, int64_t maximum)
{
    return maximum > 0 && maximum <= minimum ? 1 : minimum;
}

} // namespace

extern "C" int update_sta_qosrate(const char *mac_text, int64_t ul_min, int64_t ul_max, int64_t dl_min, int64_t dl_max)
{
    uint8_t mac[6];
    if (!read_mac(mac_text, mac))
        return -1;
    const qos_rates rates{minimum_within(ul_min, ul_max), ul_max, minimum_within(dl_min, dl_max), dl_max};
    for (const qos_vap_info &vap : qos_vaps())
        if (const uint16_t aid = get_sta_associd(vap.devname, mac))
            return config_sta_qosrule(vap.devname, aid, qos_operation::replace, rates);
    return -1;
}

extern "C" int add_all_sta_qosrates(void)
{
    if (!has_qos_table())
        return -1;
    for (const qos_vap_info &vap : qos_vaps()) {
        const unique_stations stations{get_stalist(vap.devname)};
        if (!stations) {
            log_err("%s: couldn't retrieve sta list!", __func__);
            continue;
        }
        for (vexa_list *link = stations->next; link != stations.get(); link = link->next)
            if (const uint16_t aid = entry_of<stainfo>(link)->associd)
                (void)add_sta_qosrule(vap.devname, aid);
    }
    return access(custom_script, F_OK) == 0 ? popen_exit_status(custom_command) : 0;
}
