// SPDX-License-Identifier: MIT
#pragma once

#include <libvexa.h>
#include <span>

inline constexpr char qos_log_tag[] = "qos";

// The table while it is filled: VAPs first, then the interfaces that are uplinks only.
struct qos_table {
    static constexpr size_t capacity = 32;

    std::span<qos_vap_info> vaps() { return {entries, vap_count}; }
    std::span<qos_vap_info> all() { return {entries, count}; }

    qos_vap_info entries[capacity]; // those without a name are free
    size_t vap_count, count;
};

// Fills an empty table from the configuration.
void read_qos_config(cfg_entry *cfg, qos_table &table);

// The VAPs of the table that is in force; none without one.
std::span<const qos_vap_info> qos_vaps();
bool has_qos_table();

enum class qos_operation { add, remove, replace };

// What the rules of a station are to be, in kbit/s; a negative maximum is none of its own.
struct qos_rates {
    int64_t ul_min, ul_max, dl_min, dl_max;
};

int config_sta_qosrule(const char *vap, uint32_t aid, qos_operation operation, const qos_rates &rates);
