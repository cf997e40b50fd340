// SPDX-License-Identifier: MIT
#include "config/key_table.h"
#include "config/lookup.h"
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

// Goes along a list and tells the first entry of another one with the same key. Without memory for a table it goes
// along the other list each time: slower, with the same answers.
class comparison {
public:
    comparison(cfg_entry *list, cfg_entry *other) : other_{other}, walk_{table_, list}
    {
        has_table_ = table_.reserve(get_cfg_count(other));
        if (has_table_)
            table_.add_all(other);
    }
    bool next() { return walk_.next(); }
    const cfg_entry &entry() const { return *walk_.entry(); }
    const cfg_entry *in_other() const { return has_table_ ? walk_.known() : find_entry(other_, entry().key); }

private:
    cfg_entry *other_;
    key_table table_;
    key_table::walk walk_;
    bool has_table_;
};

} // namespace

extern "C" cfg_it *get_cfg_diff_it(cfg_entry *old_cfg, cfg_entry *new_cfg)
{
    cfg_it_ctx changes{};
    for (comparison at{new_cfg, old_cfg}; at.next();) {
        if (is_comment(at.entry()))
            continue;
        const cfg_entry *before = at.in_other();
        const bool same = before && strcmp(before->value, at.entry().value) == 0;
        if (!same && !append_node(changes, at.entry()))
            log_err("%d: calloc(%zu, %zu) failed", 790, size_t{1}, sizeof(cfg_it));
    }
    for (comparison at{old_cfg, new_cfg}; at.next();)
        if (!is_comment(at.entry()) && !at.in_other() && !append_node(changes, at.entry()))
            log_err("%d: calloc(%zu, %zu) failed", 812, size_t{1}, sizeof(cfg_it));
    return changes.head;
}
