// SPDX-License-Identifier: MIT
// vexa-sim: runs a program on a simulated device.
#include "sim/changes.h"
#include "sim/command_line.h"
#include "sim/program.h"
#include "sim/record/recording.h"
#include "sim/service.h"
#include "sim/settings.h"

#include <cstdio>
#include <cstdlib>
#include <filesystem>

namespace {

constexpr int usage_error = 2;
constexpr int kernel_refuses = 77;
constexpr int cannot_make_device = 125;

// A device that this process has entered, with what is to run beside the program.
struct running {
    sim::simulated_device device;
    std::vector<sim::service> services;

    explicit running(const sim::request &r)
    {
        const std::string cloud = sim::service::place_of("vexa-cloud"), bus = sim::service::place_of("vexa-bus");
        sim::options on = r.on;
        on.reachable.insert(on.reachable.end(), {cloud, bus});
        device.enter(on);
        for (const std::string &failure : r.failures)
            sim::describe(failure);
        if (!device.exists(sim::bus_description) && r.bus)
            device.put(sim::bus_description, "{}\n"); // a bus for what programs offer themselves
        if (r.bus)
            services.emplace_back(std::vector<std::string>{bus, "/var/run/ubus.sock", sim::bus_description});
        if (r.cloud)
            services.emplace_back(std::vector<std::string>{cloud, "--report"});
    }
};

int run(char **arguments)
{
    const sim::request r = sim::read_program(arguments);
    const running here{r};
    return sim::run_program(r.program);
}

int diff(char **arguments)
{
    const sim::request r = sim::read_program(arguments);
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
    const sim::request r = sim::read_request(arguments);
    if (*r.program)
        throw sim::wrong_usage("shell takes no program; see vexa-sim run");
    const running here{r};
    setenv("PS1", (r.on.device + ":\\w\\$ ").c_str(), 1);
    const char *chosen = getenv("SHELL");
    std::string program = chosen ? chosen : "/bin/sh";
    char *const words[] = {program.data(), nullptr};
    return sim::run_program(words);
}

int set(char **settings)
{
    if (!*settings)
        throw sim::wrong_usage("nothing to set; see vexa-sim --help");
    for (; *settings; settings++)
        sim::describe(sim::line_of_setting(*settings));
    return EXIT_SUCCESS;
}

int record(char **arguments)
{
    if (!*arguments || !**arguments || arguments[1])
        throw sim::wrong_usage("record takes a folder; see vexa-sim --help");
    sim::record_device(*arguments);
    return EXIT_SUCCESS;
}

int print(const std::string &text)
{
    if (fputs(text.c_str(), stdout) >= 0 && fflush(stdout) == 0)
        return EXIT_SUCCESS;
    fprintf(stderr, "vexa-sim: cannot write: %s\n", strerror(errno));
    return EXIT_FAILURE;
}

int list(char **arguments)
{
    if (*arguments)
        throw sim::wrong_usage("list takes no arguments");
    constexpr size_t width = 16;
    std::string text;
    for (const sim::device_entry &device : sim::list_devices())
        text += device.name + std::string(device.name.size() < width ? width - device.name.size() : 1, ' ') +
                device.about + '\n';
    return print(text);
}

constexpr struct {
    const char *name;
    int (*obey)(char **arguments);
} verbs[] = {{"list", list}, {"run", run}, {"diff", diff}, {"shell", shell}, {"set", set}, {"record", record}};

// "complete -- WORD...": what the last word can become, a line each, for a shell.
int complete(char **arguments)
{
    std::vector<std::string> words, candidates;
    for (; *arguments; arguments++)
        words.emplace_back(*arguments);
    const std::string current = words.size() < 2 ? "" : words.back();
    if (words.size() <= 2)
        for (const auto &v : verbs)
            candidates.emplace_back(v.name);
    else if (words[words.size() - 2] == "--device")
        for (const sim::device_entry &device : sim::list_devices())
            candidates.push_back(device.name);
    else if (current.starts_with('-')) // else it is a file
        candidates = sim::option_names();
    std::string text;
    for (const std::string &candidate : candidates)
        if (candidate.starts_with(current))
            text += candidate + '\n';
    return print(text);
}

int command(char **arguments)
{
    const std::string verb = arguments[0] ? arguments[0] : "";
    if (verb == "--help" || (*arguments && arguments[1] && strcmp(arguments[1], "--help") == 0))
        return print(sim::help);
    if (verb == "--version")
        return print("vexa-sim " VEXA_VERSION "\n");
    if (verb == "complete")
        return complete(arguments + 1);
    for (const auto &v : verbs)
        if (verb == v.name)
            return v.obey(arguments + 1);
    throw sim::wrong_usage(verb.empty() ? "what to do? See vexa-sim --help"
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
    } catch (const sim::wrong_usage &wrong) {
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
