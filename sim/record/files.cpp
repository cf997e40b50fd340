// SPDX-License-Identifier: MIT
#include "sim/record/disguise.h"
#include "sim/record/recording.h"

#include <fstream>

namespace sim {

namespace fs = std::filesystem;

namespace {

// Files and folders that say what a device is and how it stands. What it runs and what it reported stay there.
constexpr const char *recorded[] = {
    "/etc/meshmode.conf",
    "/etc/persistent/cfg/mgmt",
    "/proc/bus/pci",
    "/proc/cpuinfo",
    "/proc/mtd",
    "/proc/vexahal",
    "/sys/bus/i2c/devices/1-0018/iio:device0",
    "/tmp/system.cfg",
    "/usr/etc/.build",
    "/usr/etc/.version",
    "/usr/lib/build.properties",
    "/var/run/dhcpc.last_state",
    "/var/run/guest/portal",
    "/var/run/ipready.br0",
    "/var/run/ntp.ready",
    "/var/run/system.internet",
    "/var/run/system.uplink",
    "/var/run/system.uplink_ifname",
    "/var/run/system.uplink_port",
    "/var/run/vexa_protocol.info",
};

constexpr size_t largest = 1 << 20;

void record_file(disguise &names, const fs::directory_entry &entry, const fs::path &root)
{
    std::error_code refused;
    if (entry.is_symlink(refused) || !entry.is_regular_file(refused))
        return;
    std::ifstream in(entry.path(), std::ios::binary);
    std::string content(largest, '\0');
    content.resize(in ? size_t(in.read(content.data(), std::streamsize(largest)).gcount()) : 0);
    if (in.is_open() && !in.bad())
        write_file(root / entry.path().relative_path(), names.text(content));
}

} // namespace

void record_files(disguise &names, const fs::path &root)
{
    constexpr auto lenient = fs::directory_options::skip_permission_denied;
    for (const char *place : recorded) {
        std::error_code refused;
        const fs::directory_entry entry(place, refused);
        record_file(names, entry, root);
        if (entry.is_directory(refused) && !entry.is_symlink(refused))
            for (const fs::directory_entry &below : fs::recursive_directory_iterator(place, lenient))
                record_file(names, below, root);
    }
}

} // namespace sim
