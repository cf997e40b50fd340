// SPDX-License-Identifier: MIT
#include "sim/devices.h"

#include "sim/error.h"

#include <algorithm>
#include <fstream>

namespace sim {

namespace fs = std::filesystem;

namespace {

// Beside the program in a build, in the folder of shared data where it is installed.
constexpr const char *places[] = {"devices", "../share/vexa/devices"};

fs::path devices_folder()
{
    const fs::path here = fs::read_symlink("/proc/self/exe").parent_path();
    for (const char *place : places)
        if (fs::is_directory(here / place))
            return fs::canonical(here / place);
    throw error("no folder of devices beside " + here.string());
}

std::string about(const fs::path &folder)
{
    std::ifstream file(folder / "about");
    std::string line;
    std::getline(file, line);
    return line;
}

} // namespace

fs::path find_device(const std::string &name)
{
    const bool is_path = name.find('/') != name.npos;
    const fs::path folder = is_path ? fs::path(name) : devices_folder() / name;
    if (name.empty() || !fs::exists(folder / "about"))
        throw unknown_device("no device '" + name + "'; vexa-sim list shows them");
    return fs::canonical(folder);
}

std::vector<device_entry> list_devices()
{
    std::vector<device_entry> devices;
    for (const fs::directory_entry &entry : fs::directory_iterator(devices_folder()))
        if (fs::exists(entry.path() / "about"))
            devices.push_back({entry.path().filename(), about(entry.path())});
    std::sort(devices.begin(), devices.end(),
              [](const device_entry &a, const device_entry &b) { return a.name < b.name; });
    return devices;
}

} // namespace sim
