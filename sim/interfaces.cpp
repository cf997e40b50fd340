// SPDX-License-Identifier: MIT
#include "sim/interfaces.h"

#include "sim/descriptor.h"
#include "sim/error.h"

#include <fstream>
#include <spawn.h>
#include <sys/mman.h>
#include <sys/wait.h>

namespace sim {

namespace {

// `ip` stands in a folder that is not on everyone's path
constexpr const char *places[] = {"/usr/sbin/ip", "/sbin/ip", "/usr/bin/ip", "/bin/ip"};

const char *ip_program()
{
    for (const char *place : places)
        if (access(place, X_OK) == 0)
            return place;
    throw error("the program ip (iproute2) is not installed");
}

descriptor memory_file(const std::string &text)
{
    descriptor file{memfd_create("interfaces", MFD_CLOEXEC)};
    if (!file || write(file.get(), text.data(), text.size()) != ssize_t(text.size()) || lseek(file.get(), 0, SEEK_SET))
        fail<error>("cannot hold the interfaces in memory");
    return file;
}

} // namespace

void make_interfaces(const std::filesystem::path &file, const std::string &more)
{
    std::ifstream lines(file);
    const descriptor input =
        memory_file("link set lo up\n" +
                    std::string(std::istreambuf_iterator<char>(lines), std::istreambuf_iterator<char>()) + more);
    char name[] = "ip", batch[] = "-batch", standard_input[] = "-";
    char *const arguments[] = {name, batch, standard_input, nullptr};
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_adddup2(&actions, input.get(), STDIN_FILENO);
    pid_t child = -1;
    const int result = posix_spawn(&child, ip_program(), &actions, nullptr, arguments, environ);
    posix_spawn_file_actions_destroy(&actions);
    int status = -1;
    if (result == 0)
        (void)waitpid(child, &status, 0);
    if (status != 0)
        throw error("cannot make the interfaces of " + file.string());
}

} // namespace sim
