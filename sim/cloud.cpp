// SPDX-License-Identifier: MIT
#include "sim/cloud.h"

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

// The program's own group: what is typed at the terminal to end another program does not reach it.
pid_t start(const char *program, const descriptor &input, const descriptor &output)
{
    const pid_t child = fork();
    if (child < 0)
        fail<error>("cannot start a process");
    if (child == 0) {
        setpgid(0, 0);
        dup2(input.get(), STDIN_FILENO);
        dup2(output.get(), STDOUT_FILENO);
        execl(program, program, "--report", nullptr);
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

std::filesystem::path cloud::program()
{
    return std::filesystem::read_symlink("/proc/self/exe").parent_path() / "vexa-cloud";
}

cloud::cloud(const std::filesystem::path &program)
{
    one_way commands = make_pipe(), answers = make_pipe();
    child_ = start(program.c_str(), commands.out, answers.in);
    commands_ = std::move(commands.in);
    answers.in = descriptor{};
    if (!says_ready(answers.out)) {
        commands_ = descriptor{};
        (void)waitpid(child_, nullptr, 0);
        throw error("the cloud does not start (it needs python3 and openssl)");
    }
}

cloud::~cloud()
{
    commands_ = descriptor{};
    (void)waitpid(child_, nullptr, 0);
}

} // namespace sim
