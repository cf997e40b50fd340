// SPDX-License-Identifier: MIT
#include "core/shell_command.h"

#include <csignal>
#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>

namespace {

constexpr char shell[] = "/bin/sh";

// A host may ignore SIGPIPE and block signals; programs expect neither. A process group of its own lets the command
// be ended with all that it started.
class surroundings {
public:
    explicit surroundings(int output)
    {
        sigset_t none, piped;
        sigemptyset(&none);
        sigemptyset(&piped);
        sigaddset(&piped, SIGPIPE);
        constexpr short set = POSIX_SPAWN_SETSIGMASK | POSIX_SPAWN_SETSIGDEF | POSIX_SPAWN_SETPGROUP;
        complete_ = posix_spawnattr_init(&attributes_) == 0 && posix_spawn_file_actions_init(&actions_) == 0 &&
                    posix_spawnattr_setsigmask(&attributes_, &none) == 0 &&
                    posix_spawnattr_setsigdefault(&attributes_, &piped) == 0 &&
                    posix_spawnattr_setpgroup(&attributes_, 0) == 0 &&
                    posix_spawnattr_setflags(&attributes_, set) == 0 &&
                    posix_spawn_file_actions_adddup2(&actions_, output, STDOUT_FILENO) == 0;
    }
    surroundings(const surroundings &) = delete;
    surroundings &operator=(const surroundings &) = delete;
    ~surroundings()
    {
        (void)posix_spawn_file_actions_destroy(&actions_);
        (void)posix_spawnattr_destroy(&attributes_);
    }

    pid_t start(const char *line) const
    {
        char *argv[] = {const_cast<char *>("sh"), const_cast<char *>("-c"), const_cast<char *>(line), nullptr};
        pid_t child = -1;
        const bool started = complete_ && posix_spawn(&child, shell, &actions_, &attributes_, argv, environ) == 0;
        return started ? child : -1;
    }

private:
    posix_spawnattr_t attributes_{};
    posix_spawn_file_actions_t actions_{};
    bool complete_;
};

} // namespace

shell_command::shell_command(const char *line) noexcept
{
    int ends[2];
    if (pipe2(ends, O_CLOEXEC) != 0)
        return;
    output_.reset(ends[0]);
    const unique_fd theirs{ends[1]};
    child_ = surroundings{theirs.get()}.start(line);
}

// Who has nothing to say any more, or nobody who listens, has nothing left to do either.
shell_command::~shell_command()
{
    if (child_ <= 0)
        return;
    const keep_errno kept;
    (void)kill(-child_, SIGKILL);
    while (waitpid(child_, nullptr, 0) < 0 && errno == EINTR) {
    }
}
