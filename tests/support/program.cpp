// SPDX-License-Identifier: MIT
#include "tests/support/program.h"

#include "tests/support/memory_file.h"

#include <algorithm>
#include <sys/wait.h>

finished run_program(const std::vector<std::string> &arguments, const std::string &input)
{
    const int files[] = {memory_file(input), memory_file(), memory_file()};
    std::vector<char *> pointers(arguments.size() + 1); // the last one stays NULL
    std::transform(arguments.begin(), arguments.end(), pointers.begin(),
                   [](const std::string &argument) { return const_cast<char *>(argument.c_str()); });
    const pid_t child = fork();
    if (child == 0) {
        for (int standard = STDIN_FILENO; standard <= STDERR_FILENO; standard++)
            dup2(files[standard], standard);
        execvp(pointers[0], pointers.data());
        _exit(127);
    }
    int status = -1;
    waitpid(child, &status, 0);
    finished result{WIFSIGNALED(status) ? 128 + WTERMSIG(status) : WEXITSTATUS(status), contents(files[1]),
                    contents(files[2])};
    for (const int file : files)
        close(file);
    return result;
}
