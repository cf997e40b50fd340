// SPDX-License-Identifier: MIT
#include "config/key_index.h"
#include "config/store.h"
#include "core/log.h"

#include <cstring>

namespace {

constexpr char log_tag[] = "cfg";

bool is_comment(const cfg_entry &entry)
{
    const char *dot = strrchr(entry.key, '.');
    return dot && strcmp(dot, ".comment") == 0;
}

} // namespace

extern "C" cfg_it *get_cfg_diff_it(cfg_entry *old_cfg, cfg_entry *new_cfg)
{
    const key_index in_old{old_cfg};
    const key_index in_new{new_cfg};
    cfg_it_ctx changes{};
    for (const cfg_entry *entry = new_cfg; entry; entry = entry->next) {
        const cfg_entry *before = is_comment(*entry) ? entry : in_old.find(entry->key);
        const bool same = before && strcmp(before->value, entry->value) == 0;
        if (!same && !append_node(changes, *entry))
            log_err("%d: calloc(%zu, %zu) failed", 790, size_t{1}, sizeof(cfg_it));
    }
    for (const cfg_entry *entry = old_cfg; entry; entry = entry->next)
        if (!is_comment(*entry) && !in_new.find(entry->key) && !append_node(changes, *entry))
            log_err("%d: calloc(%zu, %zu) failed", 812, size_t{1}, sizeof(cfg_it));
    return changes.head;
}
