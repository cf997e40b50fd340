// SPDX-License-Identifier: MIT
#pragma once

#include "sim/simulated_device.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <libvexa.h>

// The device that the test program runs on: the access point, entered before the first test. Each test finds the
// device's files as they are at first.
extern sim::simulated_device the_device;

// At namespace scope in one file of a test program that wants something else:
// `const runs_on keep_proc{{.keep_proc = true}};`
struct runs_on {
    explicit runs_on(const sim::options &);
    // no device: what is tested neither reads nor writes anything
    struct machine_t {};
    explicit runs_on(machine_t);
};
inline constexpr runs_on::machine_t the_machine{};
