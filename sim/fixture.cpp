// SPDX-License-Identifier: MIT
#include "sim/driver/driver.h"
#include "sim/settings.h"
#include "sim/simulated_device.h"

#include <vexa_sim.h>

namespace vexa_sim {

namespace fs = std::filesystem;

namespace {

sim::simulated_device &the_device()
{
    static auto *const forever = new sim::simulated_device; // until the very end of the process
    return *forever;
}

} // namespace

void enter_with(const options &chosen, const char *devices, const char *driver)
{
    sim::options all;
    all.device =
        chosen.device.find('/') == chosen.device.npos ? fs::path(devices) / chosen.device : fs::path(chosen.device);
    all.keep_proc = chosen.keep_proc;
    all.reachable = chosen.reachable;
    all.reachable.insert(all.reachable.end(), {fs::read_symlink("/proc/self/exe"), devices});
    all.driver = driver;
    try {
        the_device().enter(all);
    } catch (const sim::refused &reason) {
        throw refused(reason.what());
    }
}

void restore()
{
    the_device().restore();
}

void put(const fs::path &file, std::string_view text, mode_t mode)
{
    the_device().put(file, text, mode);
}

void remove(const fs::path &entry)
{
    the_device().remove(entry);
}

std::string text(const fs::path &file)
{
    return the_device().text(file);
}

void set(const std::string &setting)
{
    sim::describe(sim::line_of_setting(setting));
}

void fail(const std::string &request_and_error)
{
    sim::describe(sim::line_of_failure(request_and_error));
}

std::string driver_log()
{
    return sim::driver::log();
}

} // namespace vexa_sim
