// SPDX-License-Identifier: MIT
#pragma once

#include "tests/support/device.h"
#include "tests/support/service.h"

// The simulated device's bus: a broker process behind "/var/run/ubus.sock" that does what it is told.
class broker : public service {
public:
    broker() : service{{VEXA_BUS, "/var/run/ubus.sock", described()}} {}

private:
    static const char *described()
    {
        static constexpr char path[] = "/tmp/bus.json";
        the_device.put(path, R"({"power.outlet": {"status": {"outlet_table": [
            {"index": 1, "name": "A1", "relay_state": true, "outlet_voltage": 121.5}, {"index": 2, "relay_state": false}],
            "outlet_ac_power_budget": 1800, "outlet_ac_energy_7": 5000000000}},
            "power.psu": {"status": {"psu_table": [{"psu_idx": 1, "present": true}]}}})");
        return path;
    }
};
