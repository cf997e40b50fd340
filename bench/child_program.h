// SPDX-License-Identifier: MIT
#pragma once

#include <benchmark/benchmark.h>
#include <fcntl.h>
#include <spawn.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

extern char **environ;

// Runs a program to its end, what it writes going nowhere. Measured by the clock: most of the work is another
// process's.
inline void run_program(benchmark::State &state, const char *const *arguments)
{
    posix_spawn_file_actions_t nowhere;
    posix_spawn_file_actions_init(&nowhere);
    posix_spawn_file_actions_addopen(&nowhere, STDOUT_FILENO, "/dev/null", O_WRONLY, 0);
    for (auto _ : state) {
        pid_t child = 0;
        int status = 1;
        rusage used{};
        if (posix_spawnp(&child, arguments[0], &nowhere, nullptr, const_cast<char *const *>(arguments), environ) == 0)
            wait4(child, &status, 0, &used);
        if (status != 0)
            state.SkipWithError("the program failed");
        const auto seconds = [](const timeval &t) { return double(t.tv_sec) + double(t.tv_usec) * 1e-6; };
        state.SetIterationTime(seconds(used.ru_utime) + seconds(used.ru_stime));
    }
    posix_spawn_file_actions_destroy(&nowhere);
}
