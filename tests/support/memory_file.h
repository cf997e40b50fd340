// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <sys/mman.h>
#include <unistd.h>

// A file without a name, for what comes out of a descriptor, however much that is.
inline int memory_file(const std::string &text = "")
{
    const int fd = memfd_create("test", MFD_CLOEXEC);
    if (!text.empty() && write(fd, text.data(), text.size()) > 0)
        lseek(fd, 0, SEEK_SET);
    return fd;
}

inline std::string contents(int fd)
{
    std::string text(size_t(lseek(fd, 0, SEEK_END)), '\0');
    text.resize(size_t(pread(fd, text.data(), text.size(), 0)));
    return text;
}
