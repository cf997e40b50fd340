// SPDX-License-Identifier: MIT
#include "sim/preload.h"

#include "sim/error.h"

#include <cstdlib>

namespace sim {

namespace fs = std::filesystem;

namespace {

// Beside the program in a build, in a folder of the libraries where it is installed.
constexpr const char *places[] = {"libvexa-driver.so", "../" VEXA_LIBRARIES "/vexa/libvexa-driver.so"};

constexpr char on_device[] = "/var/run/vexa-sim/driver.so"; // LD_PRELOAD has no way to say a name with a blank

void append(const char *variable, const std::string &value)
{
    const char *before = getenv(variable);
    setenv(variable, (before && *before ? before + (':' + value) : value).c_str(), 1);
}

} // namespace

fs::path find_driver()
{
    const fs::path here = fs::read_symlink("/proc/self/exe").parent_path();
    for (const char *place : places)
        if (fs::exists(here / place))
            return fs::canonical(here / place);
    throw error("no libvexa-driver.so beside " + here.string());
}

device_file driver_file(const fs::path &driver)
{
    return {on_device, driver, 0, true};
}

void preload()
{
    append("LD_PRELOAD", on_device);
    append("ASAN_OPTIONS", "verify_asan_link_order=0"); // the sanitizer wants to come first, but it need not
}

} // namespace sim
