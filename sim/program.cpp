// SPDX-License-Identifier: MIT
#include "sim/program.h"

#include "sim/error.h"

#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <sstream>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

namespace sim {

namespace fs = std::filesystem;

namespace {

constexpr int not_executable = 126;
constexpr int not_found = 127;
constexpr int ended_by_signal = 128;

constexpr int passed_on[] = {SIGHUP, SIGINT, SIGQUIT, SIGTERM, SIGUSR1, SIGUSR2};

sigset_t awaited_signals()
{
    sigset_t set;
    sigemptyset(&set);
    sigaddset(&set, SIGCHLD);
    for (const int number : passed_on)
        sigaddset(&set, number);
    return set;
}

[[noreturn]] void become(char *const *arguments, const sigset_t &mask)
{
    prctl(PR_SET_PDEATHSIG, SIGKILL); // what runs on the device does not outlive the command by its death
    sigprocmask(SIG_SETMASK, &mask, nullptr);
    execvp(arguments[0], arguments);
    fprintf(stderr, "vexa-sim: cannot run %s: %s\n", arguments[0], strerror(errno));
    _exit(errno == ENOENT ? not_found : not_executable);
}

int wait_for(pid_t child, const sigset_t &awaited)
{
    int status = 0;
    while (waitpid(child, &status, WNOHANG) == 0) {
        siginfo_t signal;
        // the terminal's signals reach the whole group by themselves
        if (sigwaitinfo(&awaited, &signal) > 0 && signal.si_signo != SIGCHLD && signal.si_code <= 0)
            kill(child, signal.si_signo);
    }
    return WIFSIGNALED(status) ? ended_by_signal + WTERMSIG(status) : WEXITSTATUS(status);
}

} // namespace

std::vector<fs::path> places_of(const char *program)
{
    std::vector<fs::path> places = {fs::absolute(program)};
    for (const char *name : {"PATH", "LD_LIBRARY_PATH"}) {
        const char *folders = getenv(name);
        std::istringstream list(folders ? folders : "");
        for (std::string folder; std::getline(list, folder, ':');)
            places.push_back(fs::absolute(folder));
    }
    return places;
}

int run_program(char *const *arguments)
{
    const sigset_t awaited = awaited_signals();
    sigset_t before;
    (void)signal(SIGCHLD, SIG_DFL);
    sigprocmask(SIG_BLOCK, &awaited, &before);
    const pid_t child = fork();
    if (child < 0)
        fail<error>("cannot start a process");
    if (child == 0)
        become(arguments, before);
    return wait_for(child, awaited);
}

} // namespace sim
