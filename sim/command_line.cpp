// SPDX-License-Identifier: MIT
#include "sim/command_line.h"

#include "sim/preload.h"
#include "sim/program.h"
#include "sim/settings.h"

#include <cstring>

namespace sim {

const char help[] = "Usage: vexa-sim list\n"
                    "       vexa-sim run [OPTION]... [--] PROGRAM [ARGUMENT]...\n"
                    "       vexa-sim diff [OPTION]... [--] PROGRAM [ARGUMENT]...\n"
                    "       vexa-sim shell [OPTION]...\n"
                    "       vexa-sim set KIND.NAME.KEY=VALUE...\n"
                    "       vexa-sim record FOLDER\n"
                    "\n"
                    "Runs a program, with all that it starts, on a simulated device: in mount, network\n"
                    "and IPC namespaces of its own, on the device's files and interfaces. Nothing that\n"
                    "it writes reaches the machine.\n"
                    "\n"
                    "  list             the devices and what they are\n"
                    "  run              the program\n"
                    "  diff             the program, then what it changed in the device's files\n"
                    "  shell            a shell; this tool and what stands beside it are on its path\n"
                    "  set              on a device: change its radios while programs run\n"
                    "  record           write the device that this runs on, real or simulated, as a folder\n"
                    "                   for --device; names, keys, addresses and numbers are replaced\n"
                    "  --device NAME    the device, or a folder that describes one (its name holds a\n"
                    "                   slash); access-point when not given\n"
                    "  --fail REQ=ERR   the Wi-Fi driver refuses a request: GETMACS=E2BIG\n"
                    "  --keep-proc      leave /proc to the kernel, for programs that look at processes\n"
                    "  --writable DIR   the program may write this folder of the machine\n"
                    "  --cloud          with the services that a device reports to; at the end, what\n"
                    "                   arrived there is shown on standard error\n"
                    "  --bus            with the device's system bus\n"
                    "  --help           this text\n"
                    "  --version        the version\n"
                    "\n"
                    "The exit status is the program's, 128 and the number of the signal that ended it, 2\n"
                    "for a wrong command line, 77 when the kernel refuses namespaces, 125 when the device\n"
                    "cannot be made, 126 or 127 when the program cannot be started or found.\n"
                    "\n"
                    "Examples: vexa-sim run -- cat /proc/vexahal/system.info\n"
                    "          vexa-sim run --device ./recorded vexactl report\n"
                    "          vexa-sim set station.02:57:00:00:00:02.rssi=-84\n";

namespace {

struct option {
    std::string name;
    bool has_value;
    void (*take)(request &, const char *value);
};

void take_writable(request &r, const char *folder)
{
    if (!std::filesystem::is_directory(folder))
        throw wrong_usage(std::string{"--writable takes a folder, and '"} + folder + "' is none");
    r.on.writable.push_back(std::filesystem::absolute(folder));
}

const option known[] = {
    {"--device", true, [](request &r, const char *name) { r.on.device = name; }},
    {"--fail", true, [](request &r, const char *failure) { r.failures.push_back(line_of_failure(failure)); }},
    {"--writable", true, take_writable},
    {"--keep-proc", false, [](request &r, const char *) { r.on.keep_proc = true; }},
    {"--bus", false, [](request &r, const char *) { r.bus = true; }},
    {"--cloud", false, [](request &r, const char *) { r.cloud = true; }},
};

const option &find_option(const std::string &given)
{
    for (const option &o : known)
        if (given == o.name || (o.has_value && given.starts_with(o.name + "=")))
            return o;
    throw wrong_usage("unknown option " + given + "; see vexa-sim --help");
}

// The value of an option that is the argument or stands behind it.
const char *value_of(const option &o, char **&argument)
{
    if (!o.has_value)
        return nullptr;
    if (const char *equals = strchr(*argument, '='))
        return equals + 1;
    if (!argument[1])
        throw wrong_usage(o.name + " needs a value; see vexa-sim --help");
    return *++argument;
}

} // namespace

request read_request(char **argument)
{
    request r{};
    for (; *argument && **argument == '-'; argument++) {
        if (strcmp(*argument, "--") == 0) {
            argument++;
            break;
        }
        const option &o = find_option(*argument);
        o.take(r, value_of(o, argument));
    }
    r.program = argument;
    r.on.reachable = places_of(*argument ? *argument : ".");
    r.on.reachable.insert(r.on.reachable.end(), r.on.writable.begin(), r.on.writable.end());
    r.on.driver = find_driver();
    return r;
}

std::vector<std::string> option_names()
{
    std::vector<std::string> names;
    for (const option &o : known)
        names.push_back(o.name);
    return names;
}

request read_program(char **arguments)
{
    request r = read_request(arguments);
    if (!*r.program)
        throw wrong_usage("no program to run; see vexa-sim --help");
    return r;
}

} // namespace sim
