// SPDX-License-Identifier: MIT
#pragma once

#include <libvexa.h>
#include <memory>

struct drop_cfg {
    void operator()(cfg_entry *cfg) const noexcept { free_cfg(cfg); }
};

// What the management software says of the site: a configuration, and in it the text of the group, nullptr when there
// is none.
struct site {
    std::unique_ptr<cfg_entry, drop_cfg> cfg;
    const char *group;
};

// The serial number into vexa_protocol_ctrl.
void read_device_id(const char *func);

// Reads a key file and takes its key into vexa_protocol_ctrl. False, logged, when something is missing or wrong.
bool read_site(const char *path, bool needs_group, site &out, const char *func);
