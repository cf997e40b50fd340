// SPDX-License-Identifier: MIT
#pragma once

#include <cerrno>
#include <fcntl.h>
#include <sys/syscall.h>
#include <unistd.h>

// The system calls themselves: the C library's functions of these names may be the driver's.
namespace sim::driver::kernel {

inline int ioctl(int fd, unsigned long number, void *argument)
{
    return int(syscall(SYS_ioctl, fd, number, argument));
}

inline int open(const char *path, int flags, mode_t mode = 0)
{
    return int(syscall(SYS_openat, AT_FDCWD, path, flags, mode));
}

inline int socket(int domain, int type, int protocol)
{
    return int(syscall(SYS_socket, domain, type, protocol));
}

} // namespace sim::driver::kernel
