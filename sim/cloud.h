// SPDX-License-Identifier: MIT
#pragma once

#include "sim/descriptor.h"

#include <filesystem>
#include <sys/types.h>

namespace sim {

// The services that a device reports to, as the process vexa-cloud on the device that this process has entered. It
// shows at its end, on standard error, what arrived.
class cloud {
public:
    // Beside this program, and before a device is entered, where it would not be found.
    static std::filesystem::path program();

    explicit cloud(const std::filesystem::path &program);
    cloud(const cloud &) = delete;
    cloud &operator=(const cloud &) = delete;
    ~cloud();

private:
    descriptor commands_;
    pid_t child_ = -1;
};

} // namespace sim
