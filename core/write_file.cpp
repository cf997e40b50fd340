// SPDX-License-Identifier: MIT
#include "core/number.h"
#include "core/open_file.h"
#include "core/read_file.h"

#include <cinttypes>
#include <libvexa.h>

namespace {

constexpr mode_t private_mode = 0600;

int write_text(unique_file file, const char *fmt, va_list args) VEXA_PRINTF(2, 0);

int write_text(unique_file file, const char *fmt, va_list args)
{
    if (!file)
        return -1;
    const int written = vfprintf(file.get(), fmt, args);
    return close_written(std::move(file)) ? written : -1;
}

int add_at(int dirfd, const char *path, int64_t delta)
{
    unique_file file = stream_of(
        unique_fd{openat(dirfd, path, O_RDWR | O_CREAT | O_CLOEXEC | O_NONBLOCK | O_NOCTTY, private_mode)}, "r+");
    if (!file)
        return -1;
    char text[16] = "";
    (void)read_line(file.get(), text, sizeof text); // an empty file counts from 0
    if (ftruncate(fileno(file.get()), 0) != 0)
        return -1;
    rewind(file.get());
    fprintf(file.get(), "%" PRId64 "\n", wrapping_add(int64_t{strtoll(text, nullptr, 0)}, delta));
    return close_written(std::move(file)) ? 0 : -1;
}

} // namespace

extern "C" int fwriteline(const char *path, const char *fmt, ...)
{
    va_list args;
    va_start(args, fmt);
    const int written = write_text(unique_file{fopen(path, "we")}, fmt, args);
    va_end(args);
    return written;
}

extern "C" int fwritelineat(int dirfd, const char *path, const char *fmt, ...)
{
    unique_fd fd{openat(dirfd, path, O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, private_mode)};
    va_list args;
    va_start(args, fmt);
    const int written = write_text(stream_of(std::move(fd), "w"), fmt, args);
    va_end(args);
    return written;
}

extern "C" int fwritelongat(int dirfd, const char *path, long value)
{
    return fwritelineat(dirfd, path, "%ld\n", value) < 0 ? -1 : 0;
}

extern "C" int faddlong(const char *path, long delta)
{
    return fwriteline(path, "%ld\n", wrapping_add(freadlong(path, 0), delta)) < 1 ? -1 : 0;
}

extern "C" int faddlongat(int dirfd, const char *path, long delta)
{
    return add_at(dirfd, path, delta);
}

extern "C" int faddi64at(int dirfd, const char *path, int64_t delta)
{
    return add_at(dirfd, path, delta);
}
