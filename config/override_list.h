// SPDX-License-Identifier: MIT
#pragma once

#include "config/key_table.h"
#include "config/store.h"

// A list that grows at its end.
class entry_list {
public:
    entry_list() = default;
    entry_list(const entry_list &) = delete;
    entry_list &operator=(const entry_list &) = delete;
    ~entry_list() { free_cfg(head_); }

    cfg_entry *head() const { return head_; }
    void append(unique_entry entry)
    {
        *end_ = entry.release();
        end_ = &(*end_)->next;
    }
    cfg_entry *release()
    {
        end_ = &head_;
        return std::exchange(head_, nullptr);
    }

private:
    cfg_entry *head_ = nullptr;
    cfg_entry **end_ = &head_;
};

// The entries behind the marker. Each replaces the value of the first earlier entry with its key; instead of looking
// through all earlier ones each time, they are gathered and the list is looked through once for all of them.
class override_list {
public:
    void add(unique_entry entry, entry_list &list);
    void apply(entry_list &list);

private:
    entry_list overrides_;
    key_table table_;
};
