// SPDX-License-Identifier: MIT
#include "sim/simulated_device.h"

#include "sim/device_nodes.h"
#include "sim/interfaces.h"
#include "sim/namespaces.h"

#include <fstream>
#include <pthread.h>

namespace sim {

namespace fs = std::filesystem;

namespace {

// The device's own, empty at first.
constexpr const char *empty_folders[] = {"/tmp", "/run", "/var/run", "/var/log"};

// Sanitizers look for the threads of a process in /proc/PID, and a composed /proc has no numbers of itself.
void link_this_process()
{
    const std::string id = std::to_string(getpid());
    (void)symlink((".real/" + id).c_str(), ("/proc/" + id).c_str());
}

void compose_proc(tree &files)
{
    files.cover("/proc", shows::links);
    link_this_process();
    pthread_atfork(nullptr, nullptr, link_this_process);
}

// The interfaces of this network namespace. Where the kernel does not allow it, the machine's are seen.
void mount_sys()
{
    constexpr char interfaces[] = "/sys/devices/virtual/net";
    if (!mounts::mount_new("sysfs", "/sys"))
        return;
    mounts::attach(mounts::copy_of(path(interfaces)), interfaces); // stays writable
    mounts::make_read_only("/sys", mounts::reach::this_mount);
}

std::vector<path> with_current_folder(std::vector<path> paths)
{
    std::error_code none;
    paths.push_back(fs::current_path(none));
    return paths;
}

} // namespace

void simulated_device::enter(const options &o)
{
    options_ = o;
    folder_ = find_device(o.device);
    const std::vector<path> reachable = with_current_folder(o.reachable);
    enter_namespaces();
    mounts::make_private();
    make_interfaces(folder_ / "interfaces");

    mounts::make_read_only("/", mounts::reach::all_below);
    mounts::make_writable("/proc/sys/net");
    for (const path &writable : o.writable)
        mounts::make_writable(writable);
    mount_sys();
    files_.emplace(reachable);
    for (const char *folder : empty_folders)
        if (fs::is_directory(folder) && !fs::is_symlink(folder)) // /var/run often is a link to /run
            files_->cover(folder, shows::nothing);
    files_->cover("/etc", shows::links);
    cover_device_nodes(*files_);
    if (!o.keep_proc)
        compose_proc(*files_);
    lay_out();
    if (chdir(reachable.back().c_str()) != 0 && chdir("/") != 0)
        fail<error>("no current folder");
}

void simulated_device::lay_out()
{
    if (const path root = folder_ / "root"; fs::exists(root))
        files_->copy_from(root, options_.keep_proc ? "/proc" : "");
}

void simulated_device::restore()
{
    files_->clear();
    make_device_files(*files_);
    if (!options_.keep_proc)
        link_this_process();
    lay_out();
}

void simulated_device::put(const path &file, std::string_view text, mode_t mode)
{
    files_->put(file, text, mode);
}

void simulated_device::remove(const path &entry)
{
    files_->remove(entry);
}

bool simulated_device::exists(const path &entry) const
{
    return fs::exists(entry);
}

std::string simulated_device::text(const path &file) const
{
    std::ifstream in(file, std::ios::binary);
    if (!in)
        fail<error>("cannot read " + file.string());
    return {std::istreambuf_iterator<char>(in), {}};
}

} // namespace sim
