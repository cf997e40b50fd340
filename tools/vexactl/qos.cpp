// SPDX-License-Identifier: MIT
#include "qos.h"

#include <libvexa.h>
#include <set>

namespace {

json_t *known(int64_t value)
{
    return value < 0 ? json_null() : number(value);
}

json_t *row(const qos_vap_info &vap, const char *direction, const char *through, int64_t least, int64_t most)
{
    return object({{"vap", text(vap.devname)},
                   {"id", known(vap.id)},
                   {"usage", text(vap.usage)},
                   {"speed_mbit", number(vap.devspeed)},
                   {"direction", text(direction)},
                   {"through", text_or_null(through)},
                   {"least_kbit", known(least)},
                   {"most_kbit", known(most)}});
}

void append_limits(json_t *rows, const qos_vap_info &vap)
{
    append(rows, row(vap, "down", nullptr, vap.dl_minspeed, vap.dl_maxspeed));
    for (size_t i = 0; i < VEXA_QOS_UPLINKS; i++)
        if (*vap.uplink_devname[i])
            append(rows, row(vap, "up", vap.uplink_devname[i], vap.uplink_minspeed[i], vap.uplink_maxspeed[i]));
}

} // namespace

json_ref limit_documents(cfg_entry *cfg)
{
    json_ref rows{list()};
    std::set<const qos_vap_info *> seen;
    const unique_cfg_it names{get_cfg_section(cfg, ".devname", nullptr, "qos.vap.")};
    for (const cfg_it *it = names.get(); it; it = it->next)
        if (const qos_vap_info *vap = get_qos_vap_info(it->value); vap && seen.insert(vap).second)
            append_limits(rows.get(), *vap);
    return rows;
}
