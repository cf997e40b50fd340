// SPDX-License-Identifier: MIT
#pragma once

#include "tests/support/service.h"

// The simulated device's bus: a broker process behind "/var/run/ubus.sock" that does what it is told.
class broker : public service {
public:
    broker();
};
