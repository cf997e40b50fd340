// SPDX-License-Identifier: MIT
#include "sim/namespaces.h"

#include "sim/descriptor.h"
#include "sim/error.h"

#include <fcntl.h>
#include <sched.h>
#include <string>

namespace sim {

namespace {

constexpr int own_spaces = CLONE_NEWNS | CLONE_NEWNET | CLONE_NEWIPC | CLONE_NEWUTS;

void write_map(const char *path, const std::string &text)
{
    const descriptor file{open(path, O_WRONLY | O_CLOEXEC)};
    if (!file || write(file.get(), text.data(), text.size()) != ssize_t(text.size()))
        fail<refused>(path);
}

std::string root_is(unsigned id)
{
    return "0 " + std::to_string(id) + " 1";
}

} // namespace

void enter_namespaces()
{
    if (unshare(own_spaces) == 0)
        return;
    const uid_t user = geteuid();
    const gid_t group = getegid();
    if (unshare(CLONE_NEWUSER | own_spaces) != 0)
        fail<refused>("the kernel refuses private namespaces");
    write_map("/proc/self/setgroups", "deny");
    write_map("/proc/self/uid_map", root_is(user));
    write_map("/proc/self/gid_map", root_is(group));
}

} // namespace sim
