// SPDX-License-Identifier: MIT
#include "sim/driver/errors.h"

#include "sim/error.h"

namespace sim::driver {

namespace {

#define ERROR(name)                                                                                                    \
    {                                                                                                                  \
#name, name                                                                                                    \
    }
constexpr struct {
    const char *name;
    int number;
} errors[] = {
    {"none", 0},       ERROR(E2BIG),  ERROR(EACCES), ERROR(EAGAIN),    ERROR(EBADF),  ERROR(EBUSY),
    ERROR(EFAULT),     ERROR(EINTR),  ERROR(EINVAL), ERROR(EIO),       ERROR(EMFILE), ERROR(ENETDOWN),
    ERROR(ENFILE),     ERROR(ENODEV), ERROR(ENOENT), ERROR(ENOMEM),    ERROR(ENOTTY), ERROR(ENXIO),
    ERROR(EOPNOTSUPP), ERROR(EPERM),  ERROR(ESRCH),  ERROR(ETIMEDOUT),
};
#undef ERROR

} // namespace

int error_number(const std::string &name)
{
    for (const auto &e : errors)
        if (e.name == name)
            return e.number;
    char *end = nullptr;
    const long number = strtol(name.c_str(), &end, 10);
    if (name.empty() || *end != '\0' || number < 0 || number > INT16_MAX)
        throw error("no error is called '" + name + "'");
    return int(number);
}

} // namespace sim::driver
