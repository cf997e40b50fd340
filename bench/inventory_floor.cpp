// SPDX-License-Identifier: MIT
#include "bench/inventory_floor.h"

#include <cstdint>
#include <cstring>
#include <dirent.h>
#include <fcntl.h>
#include <initializer_list>
#include <sys/syscall.h>
#include <unistd.h>

namespace {

constexpr size_t block_size = 32768;

struct linux_dirent {
    uint64_t inode;
    int64_t offset;
    uint16_t size;
    uint8_t type;
    char name[1];
};

template <typename Visit>
long walk(int fd, Visit visit)
{
    alignas(8) char block[block_size];
    long sum = 0;
    for (long got; (got = syscall(SYS_getdents64, fd, block, sizeof block)) > 0; sum += got)
        for (long at = 0; at < got;) {
            const auto *entry = reinterpret_cast<const linux_dirent *>(block + at);
            visit(*entry);
            at += entry->size;
        }
    return sum;
}

long read_whole(const char *path)
{
    char block[block_size];
    const int fd = openat(AT_FDCWD, path, O_RDONLY | O_CLOEXEC);
    long sum = 0;
    for (ssize_t got; (got = read(fd, block, sizeof block)) > 0;)
        sum += got;
    close(fd);
    return sum;
}

void join(char *path, const char *pid, const char *entry)
{
    strcpy(stpcpy(path, pid), entry);
}

long read_once(int proc, const char *pid, const char *entry)
{
    char path[64], block[1024];
    join(path, pid, entry);
    const int fd = openat(proc, path, O_RDONLY | O_CLOEXEC);
    const ssize_t got = fd < 0 ? 0 : read(fd, block, sizeof block);
    close(fd);
    return got;
}

long descriptors(int proc, const char *pid, bool with_fds)
{
    char path[64], target[386];
    join(path, pid, "/fd");
    const int fd = openat(proc, path, O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (fd < 0)
        return 0;
    long sum = 0;
    sum += walk(fd, [&](const linux_dirent &entry) {
        if (with_fds && entry.type == DT_LNK)
            sum += readlinkat(fd, entry.name, target, sizeof target);
    });
    close(fd);
    return sum;
}

} // namespace

long floor_of_snapshot(bool with_fds)
{
    long sum = 0;
    if (with_fds)
        for (const char *table :
             {"/proc/net/unix", "/proc/net/tcp", "/proc/net/tcp6", "/proc/net/udp", "/proc/net/udp6"})
            sum += read_whole(table);
    const int proc = openat(AT_FDCWD, "/proc", O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    sum += walk(proc, [&](const linux_dirent &entry) {
        if (entry.type == DT_DIR && entry.name[0] >= '1' && entry.name[0] <= '9')
            sum += read_once(proc, entry.name, "/stat") + read_once(proc, entry.name, "/cmdline") +
                   descriptors(proc, entry.name, with_fds);
    });
    close(proc);
    return sum;
}
