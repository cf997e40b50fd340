// SPDX-License-Identifier: MIT
#include "core/format.h"
#include "core/open_file.h"

#include <byteswap.h>
#include <cstring>
#include <libvexa.h>

namespace {

constexpr char path_devices[] = "/proc/bus/pci/devices";

// offsets in the configuration space
constexpr off_t revision_at = 8;
constexpr off_t subsystem_vendor_at = 44;
constexpr off_t subsystem_at = 46;

template <typename T>
bool read_at(int fd, off_t offset, T &value)
{
    return pread(fd, &value, sizeof value, offset) == ssize_t{sizeof value};
}

void read_configuration(pci_dev &dev)
{
    char path[32];
    (void)format_whole(path, sizeof path, "/proc/bus/pci/%02x/%02x.%d", dev.bus, dev.slot, dev.function);
    const unique_fd fd = open_descriptor(path);
    uint16_t subsystem;
    uint16_t subsystem_vendor;
    uint8_t revision;
    if (!read_at(fd.get(), subsystem_at, subsystem) || !read_at(fd.get(), subsystem_vendor_at, subsystem_vendor) ||
        !read_at(fd.get(), revision_at, revision))
        return;
    // The tables of the legacy models hold the swapped values.
    dev.subsystem_id = bswap_16(subsystem);
    dev.subsystem_vendor_id = bswap_16(subsystem_vendor);
    dev.revision = revision;
}

} // namespace

extern "C" int pci_detect(pci_dev *out, int max, uint16_t vendor)
{
    const unique_file devices = open_reader(path_devices);
    if (!devices)
        return -1;
    int found = 0;
    char line[1024]; // the kernel writes up to 300 characters
    while (found < max && fgets(line, sizeof line, devices.get())) {
        unsigned place, ids, irq;
        if (sscanf(line, "%x %x %x", &place, &ids, &irq) != 3 || ids >> 16 != vendor)
            continue;
        pci_dev dev{};
        dev.bus = uint8_t(place >> 8);
        dev.slot = place >> 3 & 31;
        dev.function = place & 7;
        dev.vendor_id = uint16_t(ids >> 16);
        dev.device_id = uint16_t(ids);
        dev.irq = irq;
        read_configuration(dev);
        out[found++] = dev;
    }
    return found;
}
