// SPDX-License-Identifier: MIT
#include "core/format.h"
#include "core/log.h"
#include "core/popen.h"
#include "core/shell.h"
#include "wireless/driver.h"
#include "wireless/qos.h"
#include "wireless/qos_speed.h"
#include "wireless/wire.h"

#include <cinttypes>
#include <syslog.h>

namespace {

constexpr auto &log_tag = qos_log_tag;
constexpr int64_t least_default = 64;
constexpr int64_t most_default = 1'000'000;
constexpr int64_t limited_below = 350'000;

struct limit {
    int64_t minimum, maximum;
};

void qos_sta_control(const char *operation, const char *ifname, int32_t vap_id, uint32_t aid, limit rate)
{
    const unique_text name = shell_word(ifname);
    char command[200];
    if (!name ||
        !format_whole(command, sizeof command, "/bin/qos_control.sh %s-sta %s %d %d %" PRId64 "kbit %" PRId64 "kbit",
                      operation, name.get(), vap_id, int32_t(aid), rate.minimum, rate.maximum))
        return;
    const int status = popen_exit_status(command);
    if (status != 0)
        log_warn("(%i) cmd failed %s", status, command);
}

// The rules of one station on one VAP.
class station_rules {
public:
    station_rules(const qos_vap_info &vap, uint32_t aid, qos_operation operation, bool suppressed)
        : vap_{vap}, aid_{aid}, operation_{operation}, suppressed_{suppressed}
    {}

    // The rule on one interface: what is configured for the VAP, and what is asked for the station. The maximum in
    // force; 0 without a rule.
    int64_t set(const char *ifname, limit configured, limit asked) const
    {
        if (operation_ == qos_operation::remove) {
            qos_sta_control("del", ifname, vap_.id, aid_, {0, 0});
            return 0;
        }
        if (suppressed_)
            return 0;
        const limit rate = operation_ == qos_operation::add ? with_defaults(configured) : within_device(asked);
        qos_sta_control("replace", ifname, vap_.id, aid_, rate);
        return rate.maximum;
    }

private:
    static limit with_defaults(limit configured)
    {
        return {configured.minimum > 0 ? configured.minimum : least_default,
                configured.maximum > 0 ? configured.maximum : most_default};
    }

    limit within_device(limit asked) const
    {
        if (asked.maximum >= 0)
            return asked;
        const int64_t most = kbit_of(vap_.devspeed);
        return {asked.minimum >= most ? 1 : asked.minimum, most};
    }

    const qos_vap_info &vap_;
    uint32_t aid_;
    qos_operation operation_;
    bool suppressed_;
};

// Of several wireless uplinks only one carries traffic.
bool is_idle_uplink(const char *ifname)
{
    const qos_vap_info *entry = get_qos_vap_info(ifname);
    if (!entry || strcmp(entry->usage, "uplink") != 0)
        return false;
    char current[IFNAMSIZ] = "";
    (void)get_uplink_device(current, sizeof current);
    return strcmp(current, ifname) != 0;
}

constexpr bool limits(int64_t maximum)
{
    return maximum > 0 && maximum < limited_below;
}

void tell_driver(const char *vap, uint32_t aid, bool limited)
{
    const unique_fd sock = request_socket();
    if (!sock) {
        syslog(LOG_ERR, "%s: Error obtaining a socket\n", "config_sta_qosrule");
        return;
    }
    uint8_t record[8] = {};
    store_le32(record, aid);
    store_le32(record + 4, limited);
    (void)set80211priv(sock.get(), vap, ioctl_rate_limit, 0, 0, record, sizeof record);
}

// Without limits there is nothing to shape but what the station brings along.
bool is_suppressed(const qos_vap_info &vap, const qos_rates &rates)
{
    const bool unlimited = vap.dl_maxspeed == kbit_of(vap.devspeed) && vap.dl_maxspeed == vap.uplink_maxspeed[0];
    return unlimited && rates.ul_max <= 0 && rates.dl_max <= 0;
}

} // namespace

int config_sta_qosrule(const char *vap_name, uint32_t aid, qos_operation operation, const qos_rates &rates)
{
    openlog("libvexa", LOG_CONS | LOG_PID, LOG_USER);
    const qos_vap_info *vap = get_qos_vap_info(vap_name);
    if (!vap)
        return -1;
    log_verbose("ul_max=%ld dl_max=%ld dl_maxspeed=%ld ul_maxspeed=%ld devspeed=%ld", long(rates.ul_max),
                long(rates.dl_max), long(vap->dl_maxspeed), long(vap->uplink_maxspeed[0]), long(vap->devspeed));

    const station_rules rules{*vap, aid, operation, is_suppressed(*vap, rates)};
    const int64_t downlink =
        rules.set(vap->devname, {vap->dl_minspeed, vap->dl_maxspeed}, {rates.dl_min, rates.dl_max});
    int64_t uplink = 0; // the last one counts
    for (size_t slot = 0; slot < std::size(vap->uplink_devname); slot++) {
        const char *ifname = vap->uplink_devname[slot];
        if (*ifname && !is_idle_uplink(ifname))
            uplink = rules.set(ifname, {vap->uplink_minspeed[slot], vap->uplink_maxspeed[slot]},
                               {rates.ul_min, rates.ul_max});
    }
    if (operation != qos_operation::remove)
        tell_driver(vap->devname, aid, limits(downlink) || limits(uplink));
    return 0;
}

extern "C" int add_sta_qosrule(const char *vap, uint32_t aid)
{
    return config_sta_qosrule(vap, aid, qos_operation::add, {});
}

extern "C" int remove_sta_qosrule(const char *vap, uint32_t aid)
{
    return config_sta_qosrule(vap, aid, qos_operation::remove, {});
}
