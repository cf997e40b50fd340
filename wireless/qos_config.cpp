// SPDX-License-Identifier: MIT
#include "core/format.h"
#include "core/log.h"
#include "core/owner.h"
#include "core/text.h"
#include "wireless/qos.h"
#include "wireless/qos_speed.h"
#include "wireless/usage.h"

#include <algorithm>
#include <cstring>
#include <net/if.h>

namespace {

constexpr auto &log_tag = qos_log_tag;
constexpr char name_key[] = ".devname"; // what a section is known by
constexpr const char *wired_uplinks[] = {"eth0", "eth1", "eth4"};
constexpr int64_t default_speed = 100;

struct drop_cfg_it {
    void operator()(cfg_it *it) const noexcept { free_cfg_it(it); }
};
using unique_cfg_it = std::unique_ptr<cfg_it, drop_cfg_it>;

// One numbered section: "qos.vap.3", "qos.vap.3.uplink.1", "qos.if.2".
struct config_section {
    config_section(cfg_entry *from, const cfg_it &name)
        : cfg{from}, devname{name.value}, base{name.key}, base_length{int(strlen(name.key) - strlen(name_key))}
    {}

    int64_t number(const char *key, int64_t def) const
    {
        errno = 0; // that of a number too large would count for the next one, too
        return get_int64(cfg, def, "%.*s%s", base_length, base, key);
    }

    cfg_entry *cfg;
    const char *devname;
    const char *base;
    int base_length;
};

bool same(const char *a, const char *b)
{
    return strcmp(a, b) == 0;
}

// A minimum that leaves nothing below the maximum is none.
int64_t minimum_below(int64_t maximum, int64_t minimum)
{
    return maximum > 0 && minimum >= maximum ? 1 : minimum;
}

void read_usage(qos_vap_info &entry)
{
    char path[sizeof usage_path_format + IFNAMSIZ];
    const bool is_name =
        !strchr(entry.devname, '/') && format_whole(path, sizeof path, usage_path_format, entry.devname);
    freadline(is_name ? path : "", entry.usage, sizeof entry.usage, "user");
}

// An empty entry with that name; null when there is no room.
qos_vap_info *next_entry(qos_table &table, const char *devname)
{
    if (table.count == table.capacity) {
        log_err_as("init_qos_info", "more than %zu VAPs, %s is left out", table.capacity, devname);
        return nullptr;
    }
    qos_vap_info *entry = &table.entries[table.count++];
    copy_text(entry->devname, sizeof entry->devname, devname);
    read_usage(*entry);
    return entry;
}

void read_uplinks(const config_section &vap, qos_vap_info &entry)
{
    const unique_cfg_it sections{
        get_cfg_section(vap.cfg, name_key, nullptr, "%.*s.uplink.", vap.base_length, vap.base)};
    size_t slot = 0;
    for (const cfg_it *it = sections.get(); it; it = it->next) {
        if (slot == std::size(entry.uplink_devname)) {
            log_err_as("init_qos_info", "more than %zu uplinks of %s, %s is left out", slot, entry.devname, it->value);
            continue;
        }
        const config_section uplink{vap.cfg, *it};
        copy_text(entry.uplink_devname[slot], sizeof *entry.uplink_devname, uplink.devname);
        entry.uplink_maxspeed[slot] = uplink.number(".maxspeed", -1);
        entry.uplink_minspeed[slot] = minimum_below(entry.uplink_maxspeed[slot], uplink.number(".minspeed", -1));
        slot++;
    }
}

void read_vap(const config_section &vap, qos_table &table)
{
    qos_vap_info *entry = *vap.devname ? next_entry(table, vap.devname) : nullptr;
    if (!entry)
        return;
    entry->id = int32_t(vap.number(".id", -1));
    entry->devspeed = default_speed;
    entry->dl_maxspeed = vap.number(".dwnlink.maxspeed", -1);
    entry->dl_minspeed = minimum_below(entry->dl_maxspeed, vap.number(".dwnlink.minspeed", -1));
    read_uplinks(vap, *entry);
}

// Who has no maximum gets what the interface can do.
void read_speed(const config_section &interface, qos_table &table)
{
    const int64_t speed = interface.number(".devspeed", default_speed);
    const auto named = std::find_if(table.vaps().begin(), table.vaps().end(),
                                    [&](const qos_vap_info &entry) { return same(entry.devname, interface.devname); });
    if (named != table.vaps().end()) {
        named->devspeed = speed;
        if (named->dl_maxspeed < 0)
            named->dl_maxspeed = kbit_of(speed);
    }
    for (qos_vap_info &entry : table.vaps())
        for (size_t slot = 0; slot < std::size(entry.uplink_devname); slot++)
            if (same(entry.uplink_devname[slot], interface.devname) && entry.uplink_maxspeed[slot] < 0)
                entry.uplink_maxspeed[slot] = kbit_of(speed);
}

bool is_wireless_uplink(const config_section &interface)
{
    const char *type = get_value(interface.cfg, "", "%.*s.type", interface.base_length, interface.base);
    return same(type, "uplink") && std::none_of(std::begin(wired_uplinks), std::end(wired_uplinks),
                                                [&](const char *wired) { return same(wired, interface.devname); });
}

template <typename Read>
void each_section(cfg_entry *cfg, const char *prefix, Read read)
{
    const unique_cfg_it sections{get_cfg_section(cfg, name_key, nullptr, "%s", prefix)};
    for (const cfg_it *it = sections.get(); it; it = it->next)
        read(config_section{cfg, *it});
}

} // namespace

void read_qos_config(cfg_entry *cfg, qos_table &table)
{
    each_section(cfg, "qos.vap.", [&](const config_section &vap) { read_vap(vap, table); });
    table.vap_count = table.count;
    each_section(cfg, "qos.if.", [&](const config_section &interface) { read_speed(interface, table); });
    each_section(cfg, "qos.if.", [&](const config_section &interface) {
        if (*interface.devname && is_wireless_uplink(interface))
            next_entry(table, interface.devname);
    });
}
