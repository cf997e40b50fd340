// SPDX-License-Identifier: MIT
// The simulated devices for tests of programs that use libvexa. Link vexa::sim (CMake: find_package(vexa)).
//
// The test program itself moves onto a device, with all that it starts: it calls libvexa there, or runs its daemon, and
// nothing that either writes reaches the machine. vexa_sim_gtest.h makes a GoogleTest fixture of it. What cannot be
// done is thrown as std::runtime_error.
#ifndef VEXA_SIM_H
#define VEXA_SIM_H

#include <filesystem>
#include <stdexcept>
#include <string>
#include <string_view>
#include <sys/types.h>
#include <vector>

namespace vexa_sim {

// The kernel does not let this process have a device of its own: a reason to skip tests.
struct refused : std::runtime_error {
    using std::runtime_error::runtime_error;
};

struct options {
    std::string device = "access-point"; // as `vexa-sim list` shows them, or the folder of one, with a slash
    bool keep_proc = false;              // leave /proc to the kernel, for programs that look at processes
    // What is to stay in its place although the device covers /tmp, /run and the like, such as a program's folder. The
    // current folder and that of this program stay anyway.
    std::vector<std::filesystem::path> reachable = {};
};

void enter_with(const options &, const char *devices, const char *driver);

#ifdef VEXA_SIM_DEVICES // where they are installed, which vexa::sim tells
// Once in a process, before it has threads.
inline void enter(const options &chosen)
{
    enter_with(chosen, VEXA_SIM_DEVICES, VEXA_SIM_DRIVER);
}
#endif

// The device's files as they were at first. Its interfaces stay as they are.
void restore();

void put(const std::filesystem::path &file, std::string_view text, mode_t mode = 0644);
void remove(const std::filesystem::path &entry);
std::string text(const std::filesystem::path &file);

// Changes the radios at once: "station.02:57:00:00:00:02.rssi=-84". wireless-description.md names all that can be set.
void set(const std::string &setting);
// The Wi-Fi driver refuses a request: "GETMACS=E2BIG"; "GETMACS=none" ends that.
void fail(const std::string &request_and_error);
// What was set at the Wi-Fi driver, a line for each request.
std::string driver_log();

struct finished {
    int status; // exit status, or 128 and the number of the signal
    std::string out;
    std::string err;
};

// Runs a program to its end. One without a slash is looked for on the path.
finished run_program(const std::vector<std::string> &arguments, const std::string &input = "");

} // namespace vexa_sim

#endif
