// SPDX-License-Identifier: MIT
#include "core/log.h"
#include "core/owner.h"

#include <csignal>
#include <cstdarg>
#include <cstring>
#include <fcntl.h>
#include <sys/wait.h>

namespace {

constexpr char log_tag[] = "libvexa_exec";
constexpr const char *wrapper_candidates[] = {"/etc/syswrapper.sh", "/usr/etc/syswrapper.sh"};
constexpr size_t most_arguments = 48;

const char *find_wrapper()
{
    for (const char *path : wrapper_candidates)
        if (unique_fd{open(path, O_RDONLY | O_CLOEXEC | O_NONBLOCK)})
            return path;
    return nullptr;
}

pid_t fork_as(const char *func)
{
    const pid_t child = fork();
    if (child < 0) {
        perror("Fork Failed!!\n");
        log_debug_as(func, "[ERROR] fork failed");
    }
    return child;
}

// A host may ignore SIGPIPE and block signals; programs expect neither.
[[noreturn]] void become(char *const argv[])
{
    signal(SIGPIPE, SIG_DFL);
    sigset_t none;
    sigemptyset(&none);
    sigprocmask(SIG_SETMASK, &none, nullptr);
    execv(argv[0], argv);
    _exit(0);
}

// Reaps whatever ends until the child is among it.
void await(pid_t child, const char *func)
{
    int status;
    pid_t ended;
    do {
        ended = wait(&status);
    } while (ended != child && (ended >= 0 || errno == EINTR));
    if (ended == child && WIFSIGNALED(status))
        log_debug_as(func, "[ERROR] exit abnormally. code: %d", WEXITSTATUS(status));
}

} // namespace

extern "C" void syswrapper_impl(int wait, const char *action, ...)
{
    const char *script = find_wrapper();
    if (!script) {
        log_debug("[ERROR] unable to locate syswrapper.sh, '%s' skipped!", action);
        return;
    }
    log_verbose("syswrapper to use: %s", script);

    const char *argv[2 + most_arguments + 1] = {script, action};
    va_list args;
    va_start(args, action);
    size_t count = 0;
    const char *argument = va_arg(args, const char *);
    for (; argument && count < most_arguments; argument = va_arg(args, const char *))
        argv[2 + count++] = argument;
    va_end(args);
    if (argument) // goes on with those that fit, whatever the line says
        log_debug("[ERROR] too many arguments for syswrapper, '%s' skipped!", action);

    const pid_t child = fork_as(__func__);
    if (child > 0) {
        await(child, __func__);
    } else if (child == 0) {
        if (strcmp(action, "reload") != 0)
            log_debug("[EXEC] %s %s", script, action);
        if (!wait && fork_as(__func__) > 0)
            _exit(0);
        become(const_cast<char *const *>(argv));
    }
}

extern "C" void forkexec(char *const argv[])
{
    const pid_t child = fork_as(__func__);
    if (child > 0)
        await(child, __func__);
    else if (child == 0)
        become(argv);
}
