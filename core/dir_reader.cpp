// SPDX-License-Identifier: MIT
#include "core/dir_reader.h"

#include <cstring>
#include <sys/stat.h>
#include <sys/syscall.h>

namespace {

// What the kernel writes: a record of this kind, and behind its 19 bytes the name with a zero.
struct record {
    uint64_t inode;
    int64_t offset;
    uint16_t size;
    uint8_t type;
};
constexpr size_t name_offset = 19;
static_assert(offsetof(record, size) == 16 && offsetof(record, type) == 18);

} // namespace

bool dir_reader::read_on()
{
    const long got = syscall(SYS_getdents64, fd_.get(), block_, sizeof block_);
    error_ = got < 0 ? errno : 0;
    at_ = 0;
    end_ = got < 0 ? 0 : size_t(got);
    return got > 0;
}

directory_entry dir_reader::take()
{
    record r;
    memcpy(&r, block_ + at_, name_offset);
    const char *name = block_ + at_ + name_offset;
    at_ += r.size;
    return {name, r.type};
}

bool dir_reader::is_directory(const directory_entry &entry) const
{
    struct stat info {};
    if (entry.type != DT_UNKNOWN)
        return entry.type == DT_DIR;
    return fstatat(fd_.get(), entry.name, &info, AT_SYMLINK_NOFOLLOW) == 0 && S_ISDIR(info.st_mode);
}

unique_fd open_directory(const char *path, int dirfd)
{
    return unique_fd{openat(dirfd, path, O_RDONLY | O_DIRECTORY | O_CLOEXEC)};
}
