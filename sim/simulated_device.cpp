// SPDX-License-Identifier: MIT
#include "sim/simulated_device.h"

#include "sim/device_nodes.h"
#include "sim/eeprom.h"
#include "sim/interfaces.h"
#include "sim/namespaces.h"
#include "sim/preload.h"
#include "sim/wireless.h"

#include <fstream>
#include <pthread.h>

namespace sim {

namespace fs = std::filesystem;

namespace {

constexpr mode_t readable = 0644;

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

// Nothing of the machine can be written any more, but the settings of this network namespace, and what is asked for.
void protect_machine(const std::vector<path> &writable)
{
    mounts::make_read_only("/", mounts::reach::all_below);
    (void)mounts::make_writable("/proc/sys/net");
    for (const path &folder : writable)
        if (!mounts::make_writable(folder))
            fail<error>("cannot make " + folder.string() + " writable");
}

std::vector<path> reachable_on_device(const options &o)
{
    std::error_code none;
    std::vector<path> paths = o.reachable;
    if (!o.driver.empty())
        paths.push_back(o.driver);
    paths.push_back(fs::current_path(none));
    return paths;
}

} // namespace

void simulated_device::enter(const options &o)
{
    const path folder = find_device(o.device);
    const std::vector<path> reachable = reachable_on_device(o);
    initial_ = read_device_files(folder / "root");
    if (const path factory_data = folder / "eeprom"; fs::exists(factory_data))
        initial_.push_back(read_factory_data(factory_data));
    if (const path bus = folder / "bus"; fs::exists(bus))
        initial_.push_back({bus_description, read_file(bus), readable, false});
    const wireless radios = read_wireless(folder / "wireless");
    initial_.insert(initial_.end(), radios.files.begin(), radios.files.end());
    const bool has_driver = !radios.files.empty() && !o.driver.empty();
    if (has_driver)
        initial_.push_back(driver_file(o.driver));
    options_ = o;
    enter_namespaces();
    mounts::make_private();
    make_interfaces(folder / "interfaces", radios.interfaces);

    protect_machine(o.writable);
    mount_sys();
    files_.emplace(reachable);
    cover_machine();
    lay_out();
    if (chdir(reachable.back().c_str()) != 0 && chdir("/") != 0)
        fail<error>("no current folder");
    if (has_driver)
        preload();
}

void simulated_device::cover_machine()
{
    for (const char *folder : empty_folders)
        if (fs::is_directory(folder) && !fs::is_symlink(folder)) // /var/run often is a link to /run
            files_->cover(folder, shows::nothing);
    files_->cover("/etc", shows::links);
    cover_device_nodes(*files_);
    if (!options_.keep_proc)
        compose_proc(*files_);
}

void simulated_device::lay_out()
{
    for (const device_file &file : initial_) {
        if (options_.keep_proc && file.place.native().starts_with("/proc/"))
            continue;
        if (file.is_link)
            files_->put_link(file.place, file.content);
        else
            files_->put(file.place, file.content, file.mode);
    }
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
