// SPDX-License-Identifier: MIT
#pragma once

#include "loop.h"

#include <libvexa.h>

constexpr char bus_socket[] = "/var/run/ubus.sock";

struct close_interface {
    void operator()(vexa_ubus_interface_t *iface) const { vexa_ubus_close(iface); }
};
using unique_interface = std::unique_ptr<vexa_ubus_interface_t, close_interface>;

// A connection for one question: nothing when nobody listens.
class bus_connection {
public:
    explicit bus_connection(const char *service)
        : loop_{event_base_new()}, iface_{vexa_ubus_create(loop_.get(), bus_socket, service, VEXA_UBUS_NO_LOOKUP,
                                                           nullptr, nullptr)}
    {}
    vexa_ubus_interface_t *interface() const { return iface_.get(); }

private:
    unique_loop loop_;
    unique_interface iface_;
};
