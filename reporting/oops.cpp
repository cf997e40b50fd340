// SPDX-License-Identifier: MIT
#include "core/popen.h"
#include "core/text.h"

#include <libvexa.h>
#include <sys/stat.h>
#include <unistd.h>

// What the kernel kept of its last crash, as its own tool tells.

namespace {

constexpr char path_saved_dump[] = "/var/run/last-crashlog.txt";
constexpr char persistent[] = "/etc/persistent";

enum class oops { unknown, none, held };
oops state = oops::unknown;

// The shell would write through a link that somebody put into the place of the dump.
void remove_link(const char *path)
{
    struct stat info;
    if (lstat(path, &info) == 0 && S_ISLNK(info.st_mode))
        (void)unlink(path);
}

} // namespace

extern "C" int has_oops(void)
{
    if (state == oops::unknown)
        state = popen_status("oopsdump -e") == 0 ? oops::held : oops::none;
    return state == oops::held;
}

extern "C" int oops_clear(void)
{
    remove_link(path_saved_dump);
    (void)popen_status("oopsdump > /var/run/last-crashlog.txt");
    const int status = popen_status("oopsdump -c");
    state = oops::none;
    return status;
}

extern "C" int is_dir_in_persistent(const char *path)
{
    return begins_with(path, persistent);
}
