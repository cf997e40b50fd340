// SPDX-License-Identifier: MIT
#include "core/log.h"
#include "core/owner.h"
#include "core/paths.h"
#include "core/sleep.h"

#include <fcntl.h>
#include <sys/file.h>

namespace {

constexpr char log_tag[] = "statistics";
constexpr int tries = 11;

struct lock {
    const char *path;
    int open_flags;
    int fd = -1; // while held
};

lock report{path_report_lock, O_RDONLY | O_DIRECTORY};
lock inform_profile{path_inform_profile_lock, O_RDWR | O_CREAT};

bool take(int fd)
{
    for (int i = 0; i < tries; i++) {
        if (flock(fd, LOCK_EX | LOCK_NB) == 0)
            return true;
        sleep_a_second();
    }
    return false;
}

int acquire(lock &l, const char *func)
{
    if (l.fd >= 0) {
        log_err_as(func, "Locking %s twice", l.path);
        return -1;
    }
    unique_fd fd{open(l.path, l.open_flags | O_CLOEXEC | O_NOFOLLOW, 0640)};
    if (!fd) {
        log_err_as(func, "Can't open %s", l.path);
        return -1;
    }
    if (!take(fd.get())) {
        log_err_as(func, "couldn't lock %s", l.path);
        return -1;
    }
    l.fd = fd.release();
    return 0;
}

int release(lock &l, const char *func)
{
    if (l.fd < 0) {
        log_err_as(func, "unlocking %s without locking", l.path);
        return -1;
    }
    const unique_fd fd{std::exchange(l.fd, -1)};
    (void)flock(fd.get(), LOCK_UN); // closing alone would leave it with a child that was forked meanwhile
    return 0;
}

} // namespace

extern "C" int report_lock(void)
{
    return acquire(report, __func__);
}

extern "C" int report_unlock(void)
{
    return release(report, __func__);
}

extern "C" int report_locked(void)
{
    return report.fd >= 0;
}

extern "C" int inform_profile_lock(void)
{
    return acquire(inform_profile, __func__);
}

extern "C" int inform_profile_unlock(void)
{
    return release(inform_profile, __func__);
}
