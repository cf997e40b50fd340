// SPDX-License-Identifier: MIT
#include <cstdio>
#include <iterator>
extern "C" {
#include <libubus.h>
}

namespace {

constexpr const char *texts[] = {
    "Success",
    "Invalid command",
    "Invalid argument",
    "Method not found",
    "Not found",
    "No response",
    "Permission denied",
    "Request timed out",
    "Operation not supported",
    "Unknown error",
    "Connection failed",
    "Out of memory",
    "Parsing message data failed",
    "System error",
};
static_assert(std::size(texts) == UBUS_STATUS_SYSTEM_ERROR + 1);

} // namespace

extern "C" const char *ubus_strerror(int error)
{
    static char unknown[32];
    if (error >= 0 && size_t(error) < std::size(texts))
        return texts[error];
    (void)snprintf(unknown, sizeof unknown, "Unknown error: %d", error);
    return unknown;
}
