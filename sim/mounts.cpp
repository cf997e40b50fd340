// SPDX-License-Identifier: MIT
#include "sim/mounts.h"

#include "sim/error.h"

#include <cstdint>
#include <fcntl.h>
#include <sys/mount.h>
#include <sys/syscall.h>

namespace sim::mounts {

namespace {

// The kernel's numbers; not every C library has them.
constexpr unsigned clone_tree = 1;
constexpr unsigned from_descriptor_through_links = 0x4 | 0x10;
constexpr unsigned recursive = 0x8000;
constexpr unsigned the_folder_itself = 0x1000; // where the name is empty
constexpr uint64_t read_only = 1;

struct attributes {
    uint64_t set = 0, clear = 0, propagation = 0, user_namespace = 0;
};

descriptor copy(int folder, const char *name)
{
    descriptor found{
        int(syscall(SYS_open_tree, folder, name, clone_tree | recursive | the_folder_itself | unsigned(O_CLOEXEC)))};
    if (!found)
        fail<refused>(std::string("cannot bind ") + name);
    return found;
}

bool change(const std::filesystem::path &path, unsigned flags, attributes a)
{
    return syscall(SYS_mount_setattr, AT_FDCWD, path.c_str(), flags, &a, sizeof a) == 0;
}

} // namespace

void make_private()
{
    if (mount("none", "/", nullptr, MS_REC | MS_PRIVATE, nullptr) != 0)
        fail<refused>("the kernel refuses private mounts");
}

descriptor copy_of(const std::filesystem::path &path)
{
    return copy(AT_FDCWD, path.c_str());
}

descriptor copy_of(const descriptor &folder, const std::string &name)
{
    return copy(folder.get(), name.c_str());
}

void attach(const descriptor &copy, const std::filesystem::path &path)
{
    if (syscall(SYS_move_mount, copy.get(), "", AT_FDCWD, path.c_str(), from_descriptor_through_links) != 0)
        fail<refused>("cannot mount on " + path.string());
}

bool mount_new(const char *type, const std::filesystem::path &path, const char *data)
{
    return mount(type, path.c_str(), type, MS_NOSUID, data) == 0;
}

void make_read_only(const std::filesystem::path &path, reach r)
{
    if (!change(path, r == reach::all_below ? recursive : 0, {.set = read_only}))
        fail<refused>("cannot make " + path.string() + " read-only");
}

bool make_writable(const std::filesystem::path &path)
{
    attach(copy_of(path), path);
    return change(path, 0, {.clear = read_only});
}

} // namespace sim::mounts
