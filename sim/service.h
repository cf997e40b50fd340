// SPDX-License-Identifier: MIT
#pragma once

#include "sim/descriptor.h"

#include <filesystem>
#include <string>
#include <sys/types.h>
#include <vector>

namespace sim {

// One of this tool's programs that play what a device is connected to, on the device that this process has entered.
// It ends with this object.
class service {
public:
    // Beside this tool. To be asked for before a device is entered, where it would not be found.
    static std::filesystem::path place_of(const char *program);

    explicit service(std::vector<std::string> command); // throws sim::error when it does not become ready
    service(service &&) = default;
    service &operator=(service &&) = delete;
    ~service();

private:
    descriptor commands_; // tells, by its end, that the service is to end
    pid_t child_ = -1;
};

} // namespace sim
