// SPDX-License-Identifier: MIT
#include "device/touch_file.h"

#include "core/log.h"
#include "core/owner.h"

#include <cstring>
#include <fcntl.h>
#include <iterator>
#include <sys/stat.h>

// What other daemons publish, and marks for them.

namespace {

constexpr char log_tag[] = "libvexa_status";
constexpr char path_internet[] = "/var/run/system.internet";
constexpr char path_dhcp[] = "/var/run/dhcpc.last_state";
constexpr char path_tcp[] = "/proc/net/tcp";
constexpr char listens_on_ssh[] = ":0016 00000000:0000 0A";

constexpr const char *dhcp_states[] = {"deconfig", "leasefail", "bound", "renew"}; // counted from 1

int touch(const char *path, mode_t mode, int flags, const char *func)
{
    flags |= O_WRONLY | O_APPEND | O_CREAT | O_CLOEXEC | O_NONBLOCK | O_NOCTTY;
    const unique_fd fd{open(path, flags, 0666)};
    if (fd && fchmod(fd.get(), mode) == 0)
        return 0;
    log_err_as(func, "%s - %i/%s", path, errno, strerror(errno));
    return -1;
}

} // namespace

extern "C" int system_internet_status(void)
{
    char digit[2];
    if (access(path_internet, R_OK) != 0)
        return -1;
    return int(strtol(freadline(path_internet, digit, sizeof digit, "0"), nullptr, 10));
}

extern "C" int system_dhcp_status(void)
{
    char state[16];
    freadline(path_dhcp, state, sizeof state, "");
    for (size_t i = 0; i < std::size(dhcp_states); i++)
        if (strcmp(state, dhcp_states[i]) == 0)
            return int(i) + 1;
    return 0;
}

extern "C" int system_is_ssh(void)
{
    char line[255];
    return fsreadlinebykey(path_tcp, listens_on_ssh, line, sizeof line) == 0;
}

extern "C" int touch_file(const char *path, mode_t mode)
{
    return touch(path, mode, 0, __func__);
}

int touch_mark(const char *path, mode_t mode)
{
    return touch(path, mode, O_NOFOLLOW, "touch_file");
}
