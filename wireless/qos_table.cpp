// SPDX-License-Identifier: MIT
#include "core/log.h"
#include "core/owner.h"
#include "core/paths.h"
#include "wireless/qos.h"

#include <cstring>

static_assert(offsetof(qos_vap_info, devname) == 4 && offsetof(qos_vap_info, devspeed) == 24);
static_assert(offsetof(qos_vap_info, dl_minspeed) == 40 && offsetof(qos_vap_info, usage) == 48);
static_assert(offsetof(qos_vap_info, uplink_devname) == 60 && offsetof(qos_vap_info, uplink_maxspeed) == 160);
static_assert(offsetof(qos_vap_info, uplink_minspeed) == 208 && sizeof(qos_vap_info) == 256);

namespace {

constexpr auto &log_tag = qos_log_tag;

qos_table *table; // from init_qos_info() to free_qos_info()

struct drop_cfg {
    void operator()(cfg_entry *cfg) const noexcept { free_cfg(cfg); }
};

bool is_on(cfg_entry *cfg)
{
    errno = 0; // an ERANGE of before would count
    return get_bool(cfg, 0, "qos.status") != 0 && get_int32(cfg, 0, "qos.mode") != 0;
}

} // namespace

std::span<const qos_vap_info> qos_vaps()
{
    return table ? std::span<const qos_vap_info>{table->vaps()} : std::span<const qos_vap_info>{};
}

bool has_qos_table()
{
    return table != nullptr;
}

extern "C" int init_qos_info(void)
{
    if (table)
        return 0;
    const keep_errno kept;
    const std::unique_ptr<cfg_entry, drop_cfg> cfg{parse(path_system_cfg)};
    if (!cfg)
        return -1;
    if (!is_on(cfg.get()))
        return 0;
    table = static_cast<qos_table *>(calloc(1, sizeof(qos_table)));
    if (!table) {
        log_err("No memory for qos info");
        return -1;
    }
    read_qos_config(cfg.get(), *table);
    return 0;
}

extern "C" void free_qos_info(void)
{
    free(table);
    table = nullptr;
}

extern "C" qos_vap_info *get_qos_vap_info(const char *vap)
{
    if (!table || !vap || !*vap)
        return nullptr;
    for (qos_vap_info &entry : table->all())
        if (strcmp(entry.devname, vap) == 0)
            return &entry;
    return nullptr;
}
