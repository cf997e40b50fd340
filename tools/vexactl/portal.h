// SPDX-License-Identifier: MIT
#pragma once

#include "document.h"

#include <libvexa.h>

// The guest portals of the device.
class portal_set {
public:
    portal_set()
    {
        guest_portal_set_init(&set_);
        guest_portal_set_read(&set_);
    }
    portal_set(const portal_set &) = delete;
    portal_set &operator=(const portal_set &) = delete;
    ~portal_set() { guest_portal_set_clear(&set_); }

    const guest_portal *find(const char *name) const { return guest_portal_from_name(&set_, name); }
    json_ref documents() const;

private:
    guest_portal_set set_{};
};
