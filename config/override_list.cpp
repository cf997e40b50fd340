// SPDX-License-Identifier: MIT
#include "config/override_list.h"

void override_list::add(unique_entry entry, entry_list &list)
{
    // without memory for a larger table the list is looked through now, and again for those that follow
    if (table_.is_full() && !table_.reserve(table_.size() + 1))
        apply(list);
    if (cfg_entry *earlier = table_.find_or_add(entry.get()))
        std::swap(earlier->value, entry->value);
    else
        overrides_.append(std::move(entry));
}

void override_list::apply(entry_list &list)
{
    if (table_.size() == 0)
        return;
    for (key_table::walk at{table_, list.head()}; at.next();)
        if (cfg_entry *known = at.known(); known && known->value) {
            free(at.entry()->value);
            at.entry()->value = std::exchange(known->value, nullptr);
        }
    table_.clear();
    for (cfg_entry *rest = overrides_.release(); rest;) {
        unique_entry entry{std::exchange(rest, rest->next)};
        entry->next = nullptr;
        if (entry->value) // no earlier entry took it
            list.append(std::move(entry));
    }
}
