// SPDX-License-Identifier: MIT
#pragma once

#include <libvexa.h>
#include <memory>

void free_process(vexa_ps_entry *entry);

struct drop_process {
    void operator()(vexa_ps_entry *entry) const noexcept { free_process(entry); }
};
using unique_process = std::unique_ptr<vexa_ps_entry, drop_process>;

struct drop_processes {
    void operator()(vexa_ps_list *list) const noexcept { vexa_ps_list_free(list); }
};
using unique_processes = std::unique_ptr<vexa_ps_list, drop_processes>;
