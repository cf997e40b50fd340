// SPDX-License-Identifier: MIT
// Takes the place of the C library's functions of these names in a program: linked into it, or preloaded.
#include "sim/driver/driver.h"
#include "sim/driver/kernel.h"
#include "sim/driver/places.h"

#include <cstdarg>
#include <cstring>
#include <exception>
#include <sys/socket.h>

#define REPLACES extern "C" __attribute__((visibility("default")))

namespace {

using namespace sim::driver;

int result_of(int failure)
{
    errno = failure;
    return -1;
}

// What a program does not expect does not reach it.
int failure(request what) noexcept
{
    const int before = errno;
    const int number = failure_of(what);
    errno = before;
    return number;
}

std::optional<int> answer_kept_apart(int fd, uint32_t number, void *argument) noexcept
{
    const int before = errno;
    const std::optional<int> result = answer(fd, number, argument);
    errno = before;
    return result;
}

int open_file(const char *path, int flags, mode_t mode)
{
    if (strcmp(path, places::tracker) == 0)
        if (const int number = failure(request::opened))
            return result_of(number);
    return kernel::open(path, flags, mode);
}

} // namespace

// <sys/ioctl.h> declares the number as int or as unsigned long, each C library its own way.
REPLACES int ioctl(int fd, unsigned long number, ...)
{
    va_list arguments;
    va_start(arguments, number);
    void *argument = va_arg(arguments, void *);
    va_end(arguments);
    const std::optional<int> result = answer_kept_apart(fd, uint32_t(number), argument);
    if (!result)
        return kernel::ioctl(fd, number, argument);
    return *result < 0 ? result_of(-*result) : *result;
}

REPLACES int socket(int domain, int type, int protocol)
{
    if (domain == AF_INET && (type & ~(SOCK_CLOEXEC | SOCK_NONBLOCK)) == SOCK_DGRAM)
        if (const int number = failure(request::new_socket))
            return result_of(number);
    return kernel::socket(domain, type, protocol);
}

#define OPENS(name, more)                                                                                              \
    REPLACES int name(const char *path, int flags, ...)                                                                \
    {                                                                                                                  \
        va_list arguments;                                                                                             \
        va_start(arguments, flags);                                                                                    \
        const mode_t mode = flags & (O_CREAT | O_TMPFILE) ? va_arg(arguments, mode_t) : 0;                             \
        va_end(arguments);                                                                                             \
        return open_file(path, flags | (more), mode);                                                                  \
    }

OPENS(open, 0)
#ifdef __GLIBC__
OPENS(open64, O_LARGEFILE)
#endif
