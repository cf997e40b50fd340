// SPDX-License-Identifier: MIT
#include "sim/device_nodes.h"

#include <sys/stat.h>
#include <utility>

namespace sim {

namespace fs = std::filesystem;

namespace {

constexpr const char *nodes[] = {"null", "zero", "full", "random", "urandom", "tty"};

constexpr struct {
    const char *name, *target;
} links[] = {
    {"fd", "/proc/self/fd"},       {"stdin", "/proc/self/fd/0"}, {"stdout", "/proc/self/fd/1"},
    {"stderr", "/proc/self/fd/2"}, {"ptmx", "pts/ptmx"},
};

constexpr mode_t log_mode = 0600;
constexpr mode_t everyones_folder = 01777;

} // namespace

void make_device_files(tree &files)
{
    for (const auto &l : links)
        files.put_link(fs::path("/dev") / l.name, l.target);
    files.put("/dev/kmsg", "", log_mode);
    files.own("/dev/shm");
    (void)chmod("/dev/shm", everyones_folder);
}

void cover_device_nodes(tree &files)
{
    std::vector<std::pair<fs::path, descriptor>> copies; // mknod is not for everyone, binding is
    for (const char *name : nodes)
        if (const fs::path node = fs::path("/dev") / name; fs::exists(node))
            copies.emplace_back(node, mounts::copy_of(node));
    files.cover("/dev", shows::nothing);
    for (const auto &[node, copy] : copies) {
        files.put(node, "", log_mode);
        mounts::attach(copy, node);
    }
    files.own("/dev/pts");
    (void)mounts::mount_new("devpts", "/dev/pts", "newinstance,mode=620,ptmxmode=666");
    make_device_files(files);
}

} // namespace sim
