// SPDX-License-Identifier: MIT
// vexa-sim: runs a program on a simulated device.
#include "sim/changes.h"
#include "sim/cloud.h"
#include "sim/preload.h"
#include "sim/program.h"
#include "sim/settings.h"
#include "sim/simulated_device.h"

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <optional>

namespace {

constexpr int usage_error = 2;
constexpr int kernel_refuses = 77;
constexpr int cannot_make_device = 125;

constexpr char help[] = "Usage: vexa-sim list\n"
                        "       vexa-sim run [OPTION]... [--] PROGRAM [ARGUMENT]...\n"
                        "       vexa-sim diff [OPTION]... [--] PROGRAM [ARGUMENT]...\n"
                        "       vexa-sim shell [OPTION]...\n"
                        "       vexa-sim set KIND.NAME.KEY=VALUE...\n"
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
                        "  --device NAME    the device, or a folder that describes one (its name holds a\n"
                        "                   slash); access-point when not given\n"
                        "  --fail REQ=ERR   the Wi-Fi driver refuses a request: GETMACS=E2BIG\n"
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
                        "Examples: vexa-sim run -- cat /proc/vexahal/system.info\n"
                        "          vexa-sim set station.02:57:00:00:00:02.rssi=-84\n";

struct wrong_usage : std::runtime_error {
    using std::runtime_error::runtime_error;
};

struct request {
    sim::options options;
    bool cloud;
    std::vector<std::string> failures; // lines of the radios' description
    char **program;
};

// The value of an option that is the argument or stands behind it; null when the argument is another one.
const char *value_of(const std::string &name, char **&argument)
{
    const std::string given = *argument;
    if (given.starts_with(name + "="))
        return *argument + name.size() + 1;
    if (given != name)
        return nullptr;
    if (!argument[1])
        throw wrong_usage(name + " needs a value; see vexa-sim --help");
    return *++argument;
}

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
        else if (const char *device = value_of("--device", argument))
            r.options.device = device;
        else if (const char *failure = value_of("--fail", argument))
            r.failures.push_back(sim::line_of_failure(failure));
        else
            throw wrong_usage("unknown option " + option + "; see vexa-sim --help");
    }
    r.program = argument;
    r.options.reachable = sim::places_of(*argument ? *argument : ".");
    r.options.driver = sim::find_driver();
    return r;
}

// A device that this process has entered, with what is to run beside the program.
struct running {
    sim::simulated_device device;
    std::optional<sim::cloud> cloud;

    explicit running(const request &r)
    {
        const std::filesystem::path cloud_program = sim::cloud::program();
        sim::options options = r.options;
        options.reachable.push_back(cloud_program);
        device.enter(options);
        for (const std::string &failure : r.failures)
            sim::describe(failure);
        if (r.cloud)
            cloud.emplace(cloud_program);
    }
};

request read_program(char **arguments)
{
    request r = read_request(arguments);
    if (!*r.program)
        throw wrong_usage("no program to run; see vexa-sim --help");
    return r;
}

int run(char **arguments)
{
    const request r = read_program(arguments);
    const running here{r};
    return sim::run_program(r.program);
}

int diff(char **arguments)
{
    const request r = read_program(arguments);
    const running here{r};
    const sim::device_state before = here.device.files();
    const int status = sim::run_program(r.program);
    sim::show_changes(before, here.device.files());
    return status;
}

// As in a build, where vexactl stands in a folder of its own, and when all are installed in one.
void extend_path()
{
    const auto here = std::filesystem::read_symlink("/proc/self/exe").parent_path();
    const char *before = getenv("PATH");
    const std::string path = here.string() + ":" + (here.parent_path() / "tools/vexactl").string() + ":" +
                             (before ? before : "/usr/bin:/bin");
    setenv("PATH", path.c_str(), 1);
}

int shell(char **arguments)
{
    extend_path();
    const request r = read_request(arguments);
    if (*r.program)
        throw wrong_usage("shell takes no program; see vexa-sim run");
    const running here{r};
    setenv("PS1", (r.options.device + ":\\w\\$ ").c_str(), 1);
    const char *chosen = getenv("SHELL");
    std::string program = chosen ? chosen : "/bin/sh";
    char *const words[] = {program.data(), nullptr};
    return sim::run_program(words);
}

int set(char **settings)
{
    if (!*settings)
        throw wrong_usage("nothing to set; see vexa-sim --help");
    for (; *settings; settings++)
        sim::describe(sim::line_of_setting(*settings));
    return EXIT_SUCCESS;
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
    static constexpr struct {
        const char *name;
        int (*obey)(char **arguments);
    } verbs[] = {{"run", run}, {"diff", diff}, {"shell", shell}, {"set", set}};
    const std::string verb = arguments[0] ? arguments[0] : "";
    if (verb == "--help" || (*arguments && arguments[1] && strcmp(arguments[1], "--help") == 0))
        return print(help);
    if (verb == "--version")
        return print("vexa-sim " VEXA_VERSION "\n");
    for (const auto &v : verbs)
        if (verb == v.name)
            return v.obey(arguments + 1);
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
    } catch (const std::invalid_argument &wrong) {
        return complain(wrong, usage_error);
    } catch (const sim::unknown_device &wrong) {
        return complain(wrong, usage_error);
    } catch (const sim::refused &wrong) {
        return complain(wrong, kernel_refuses);
    } catch (const std::exception &wrong) {
        return complain(wrong, cannot_make_device);
    }
}
