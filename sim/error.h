// SPDX-License-Identifier: MIT
#pragma once

#include <cerrno>
#include <cstring>
#include <stdexcept>
#include <string>

namespace sim {

// Something about a device that cannot be done as asked.
struct error : std::runtime_error {
    using std::runtime_error::runtime_error;
};

// The kernel does not let this process have a device of its own.
struct refused : error {
    using error::error;
};

struct unknown_device : error {
    using error::error;
};

template <typename Error>
[[noreturn]] void fail(const std::string &what)
{
    throw Error(what + ": " + strerror(errno));
}

} // namespace sim
