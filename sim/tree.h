// SPDX-License-Identifier: MIT
#pragma once

#include "sim/device_files.h"
#include "sim/mounts.h"

#include <filesystem>
#include <map>
#include <string>
#include <string_view>
#include <vector>

namespace sim {

using std::filesystem::path;

// What stands in a folder of the machine after the device has covered it.
enum class shows {
    nothing,
    links, // to the machine's own entries, kept aside in the folder ".real"
    mounts // of its folders (programs find what belongs to them by their own path), links to its files
};

// The device's file tree over the machine's. All that is written lies in one tmpfs; the machine's entries are links
// or mounts that can be replaced or removed one by one.
class tree {
public:
    // What is in `kept` stays in its place, with all that stands beside it, when an empty folder covers it.
    explicit tree(std::vector<path> kept);

    void cover(const path &folder, shows);
    // Makes the folder, and those above that are missing, so that entries can be added and removed.
    void own(const path &folder);

    void put(const path &file, std::string_view text, mode_t mode);
    void put_link(const path &link, const path &target);
    void remove(const path &entry);
    // Covered folders as they were at first.
    void clear();

    // What lies in the device's own folders, but for what leads into the machine.
    std::map<path, device_file> files() const;

private:
    struct covered {
        path folder;
        shows content;
    };

    bool owns(const path &folder) const;
    bool link_into_machine(const path &entry) const;
    void fill(const covered &);
    void expand(const path &link);
    void remove_all(const path &entry) const;

    std::vector<path> kept_;
    descriptor machine_tmp_;
    descriptor store_;
    dev_t device_ = 0;
    std::vector<covered> covers_;
};

} // namespace sim
