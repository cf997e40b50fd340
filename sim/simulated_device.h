// SPDX-License-Identifier: MIT
#pragma once

#include "sim/device_files.h"
#include "sim/devices.h"
#include "sim/error.h"
#include "sim/tree.h"

#include <optional>

namespace sim {

// Where a device has the answers of its system bus, for vexa-bus.
inline constexpr char bus_description[] = "/var/run/vexa-sim/bus";

struct options {
    std::string device = default_device;
    bool keep_proc = false;           // leave the kernel's own /proc alone; the device's files below it are not there
    std::vector<path> reachable = {}; // stays in its place although the device covers /tmp, /run and the like
    std::vector<path> writable = {};  // folders of the machine that may be written
    path driver = {};                 // preloaded in programs that are started on a device with radios
};

// The device that this process and its children run on. The machine's files and network are out of reach of anything
// they write. Whatever cannot be done is thrown: `refused` when the kernel does not let us, else `error`.
class simulated_device {
public:
    void enter(const options &);
    bool entered() const { return files_.has_value(); }

    void put(const path &file, std::string_view text, mode_t mode = 0644);
    void remove(const path &entry);
    bool exists(const path &entry) const;
    std::string text(const path &file) const;

    std::map<path, device_file> files() const { return files_->files(); }

    // The files as they were after entering. Interfaces stay as they are.
    void restore();

private:
    void cover_machine();
    void lay_out();

    options options_;
    std::vector<device_file> initial_;
    std::optional<tree> files_;
};

} // namespace sim
