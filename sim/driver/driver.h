// SPDX-License-Identifier: MIT
#pragma once

#include "sim/driver/requests.h"

#include <cstdint>
#include <optional>
#include <string>

// The Wi-Fi driver of the device that this process runs on. It knows what the description on the device says, also
// when that changes; where there is none, the kernel answers everything.
namespace sim::driver {

// The result of an ioctl: 0 or more, or a negated errno. Nothing when it is for the kernel to answer.
std::optional<int> answer(int fd, uint32_t number, void *argument);

// The errno with which a system call before a request must fail, 0 when it must not.
int failure_of(request);

// For tests: adds lines to the description of the device.
void change(const std::string &lines);
// For tests: what was set, a line each; with "setting log all" every request.
std::string log();

} // namespace sim::driver
