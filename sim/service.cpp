// SPDX-License-Identifier: MIT
#include "sim/service.h"

#include "sim/error.h"

#include <cstring>
#include <fcntl.h>
#include <sys/wait.h>

namespace sim {

namespace {

struct one_way {
    descriptor out, in;
};

one_way make_pipe()
{
    int ends[2];
    if (pipe2(ends, O_CLOEXEC) != 0)
        fail<error>("cannot make a pipe");
    return {descriptor{ends[0]}, descriptor{ends[1]}};
}

// A group of its own: what is typed at the terminal to end the program on the device does not reach it.
pid_t start(std::vector<std::string> &command, const descriptor &input, const descriptor &output)
{
    std::vector<char *> words;
    words.reserve(command.size() + 1);
    for (std::string &word : command)
        words.push_back(word.data());
    words.push_back(nullptr);
    const pid_t child = fork();
    if (child < 0)
        fail<error>("cannot start a process");
    if (child == 0) {
        setpgid(0, 0);
        dup2(input.get(), STDIN_FILENO);
        dup2(output.get(), STDOUT_FILENO);
        execv(words[0], words.data());
        _exit(127);
    }
    return child;
}

bool says_ready(const descriptor &answers)
{
    constexpr char ready[] = "ready\n";
    char line[sizeof ready - 1] = "";
    size_t got = 0;
    for (ssize_t n = 1; n > 0 && got < sizeof line; got += size_t(n > 0 ? n : 0))
        n = read(answers.get(), line + got, sizeof line - got);
    return memcmp(line, ready, sizeof line) == 0;
}

} // namespace

std::filesystem::path service::place_of(const char *program)
{
    return std::filesystem::read_symlink("/proc/self/exe").parent_path() / program;
}

service::service(std::vector<std::string> command)
{
    one_way commands = make_pipe(), answers = make_pipe();
    child_ = start(command, commands.out, answers.in);
    commands_ = std::move(commands.in);
    answers.in = descriptor{};
    if (!says_ready(answers.out)) {
        commands_ = descriptor{};
        (void)waitpid(child_, nullptr, 0);
        throw error(command[0] + " does not start (it needs python3, the cloud openssl, too)");
    }
}

service::~service()
{
    if (!commands_)
        return; // another object has it now
    commands_ = descriptor{};
    (void)waitpid(child_, nullptr, 0);
}

} // namespace sim
