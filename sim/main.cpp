// SPDX-License-Identifier: MIT
// vexa-sim: runs a program on a simulated device.
#include "sim/cloud.h"
#include "sim/preload.h"
#include "sim/program.h"
#include "sim/simulated_device.h"

#include <cstdio>
#include <cstdlib>

namespace {

constexpr int usage_error = 2;
constexpr int kernel_refuses = 77;
constexpr int cannot_make_device = 125;

constexpr char help[] = "Usage: vexa-sim list\n"
                        "       vexa-sim run [--device NAME] [--keep-proc] [--cloud] -- PROGRAM [ARGUMENT]...\n"
                        "\n"
                        "Runs a program, with all that it starts, on a simulated device: in mount, network\n"
                        "and IPC namespaces of its own, on the device's files and interfaces. Nothing that\n"
                        "it writes reaches the machine.\n"
                        "\n"
                        "  list             the devices and what they are\n"
                        "  --device NAME    the device, or a folder that describes one (its name holds a\n"
                        "                   slash); access-point when not given\n"
                        "  --keep-proc      leave /proc to the kernel, for programs that look at processes\n"
                        "  --cloud          with the services that a device reports to; at the end, what\n"
                        "                   arrived there is shown on standard error\n"
                        "  --help           this text\n"
                        "  --version        the version\n"
                        "\n"
                        "The exit status is the program's, 128 and the number of the signal that ended it, 2\n"
                        "for a wrong command line, 77 when the kernel refuses namespaces, 125 when the device\n"
                        "cannot be made, 126 or 127 when the program cannot be started or found.\n"
                        "\n"
                        "Example: vexa-sim run -- cat /proc/vexahal/system.info\n";

struct wrong_usage : std::runtime_error {
    using std::runtime_error::runtime_error;
};

struct request {
    sim::options options;
    bool cloud;
    char **program;
};

request read_request(char **argument)
{
    request r{};
    for (; *argument && **argument == '-'; argument++) {
        const std::string option = *argument;
        if (option == "--") {
            argument++;
            break;
        }
        if (option == "--keep-proc")
            r.options.keep_proc = true;
        else if (option == "--cloud")
            r.cloud = true;
        else if (option.starts_with("--device="))
            r.options.device = option.substr(option.find('=') + 1);
        else if (option == "--device" && argument[1])
            r.options.device = *++argument;
        else if (option == "--device")
            throw wrong_usage("--device needs a name; vexa-sim list shows them");
        else
            throw wrong_usage("unknown option " + option + "; see vexa-sim --help");
    }
    if (!*argument)
        throw wrong_usage("no program to run; see vexa-sim --help");
    r.program = argument;
    r.options.reachable = sim::places_of(*argument);
    r.options.driver = sim::find_driver();
    return r;
}

int run(char **arguments)
{
    request r = read_request(arguments);
    const std::filesystem::path cloud_program = sim::cloud::program();
    r.options.reachable.push_back(cloud_program);
    sim::simulated_device device;
    device.enter(r.options);
    std::optional<sim::cloud> cloud;
    if (r.cloud)
        cloud.emplace(cloud_program);
    return sim::run_program(r.program);
}

int print(const std::string &text)
{
    if (fputs(text.c_str(), stdout) >= 0 && fflush(stdout) == 0)
        return EXIT_SUCCESS;
    fprintf(stderr, "vexa-sim: cannot write: %s\n", strerror(errno));
    return EXIT_FAILURE;
}

int list()
{
    constexpr size_t width = 16;
    std::string text;
    for (const sim::device_entry &device : sim::list_devices())
        text += device.name + std::string(device.name.size() < width ? width - device.name.size() : 1, ' ') +
                device.about + '\n';
    return print(text);
}

int command(char **arguments)
{
    const std::string verb = arguments[0] ? arguments[0] : "";
    if (verb == "--help" || (verb == "run" && arguments[1] && strcmp(arguments[1], "--help") == 0))
        return print(help);
    if (verb == "--version")
        return print("vexa-sim " VEXA_VERSION "\n");
    if (verb == "run")
        return run(arguments + 1);
    if (verb == "list" && arguments[1])
        throw wrong_usage("list takes no arguments");
    if (verb == "list")
        return list();
    throw wrong_usage(verb.empty() ? "what to do? See vexa-sim --help"
                                   : "no command '" + verb + "'; see vexa-sim --help");
}

int complain(const std::exception &wrong, int status)
{
    fprintf(stderr, "vexa-sim: %s\n", wrong.what());
    return status;
}

} // namespace

int main(int, char **argv)
{
    try {
        return command(argv + 1);
    } catch (const wrong_usage &wrong) {
        return complain(wrong, usage_error);
    } catch (const sim::unknown_device &wrong) {
        return complain(wrong, usage_error);
    } catch (const sim::refused &wrong) {
        return complain(wrong, kernel_refuses);
    } catch (const std::exception &wrong) {
        return complain(wrong, cannot_make_device);
    }
}
