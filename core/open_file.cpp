// SPDX-License-Identifier: MIT
#include "core/open_file.h"

#include <libvexa.h>

unique_file stream_of(unique_fd fd, const char *mode)
{
    unique_file file{fd ? fdopen(fd.get(), mode) : nullptr};
    if (file)
        (void)fd.release();
    return file;
}

unique_file open_reader(const char *path, int dirfd)
{
    return stream_of(open_descriptor(path, dirfd), "r");
}

unique_fd open_descriptor(const char *path, int dirfd)
{
    return unique_fd{openat(dirfd, path, O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY)};
}

unique_fd open_writable(const char *path, int flags, mode_t mode, int dirfd)
{
    return unique_fd{openat(dirfd, path, flags | O_CREAT | O_NOFOLLOW | O_CLOEXEC | O_NONBLOCK | O_NOCTTY, mode)};
}

bool close_written(unique_file file)
{
    const bool failed = ferror(file.get()) != 0;
    return fclose(file.release()) == 0 && !failed;
}

extern "C" FILE *fopen_format(const char *mode, const char *path_fmt, ...)
{
    va_list args;
    va_start(args, path_fmt);
    const unique_text path{malloc_vprintf(path_fmt, args)};
    va_end(args);
    const unique_text closing_on_exec{malloc_printf("%ce%s", *mode, *mode ? mode + 1 : "")};
    return path && closing_on_exec ? fopen(path.get(), closing_on_exec.get()) : nullptr;
}
