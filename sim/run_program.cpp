// SPDX-License-Identifier: MIT
#include "sim/descriptor.h"
#include "sim/error.h"

#include <sys/mman.h>
#include <sys/wait.h>
#include <vexa_sim.h>

namespace vexa_sim {

namespace {

// Files without a name, for what goes into a program and what comes out of it, however much that is.
sim::descriptor memory_file(const std::string &text = "")
{
    sim::descriptor file{memfd_create("standard", MFD_CLOEXEC)};
    if (!file || pwrite(file.get(), text.data(), text.size(), 0) != ssize_t(text.size()))
        sim::fail<sim::error>("cannot hold a program's input and output in memory");
    return file;
}

std::string content(const sim::descriptor &file)
{
    std::string text(size_t(lseek(file.get(), 0, SEEK_END)), '\0');
    text.resize(size_t(pread(file.get(), text.data(), text.size(), 0)));
    return text;
}

} // namespace

finished run_program(const std::vector<std::string> &arguments, const std::string &input)
{
    const sim::descriptor files[] = {memory_file(input), memory_file(), memory_file()};
    std::vector<char *> pointers;
    pointers.reserve(arguments.size() + 1);
    for (const std::string &argument : arguments)
        pointers.push_back(const_cast<char *>(argument.c_str()));
    pointers.push_back(nullptr);
    const pid_t child = fork();
    if (child < 0)
        sim::fail<sim::error>("cannot start a process");
    if (child == 0) {
        for (int standard = STDIN_FILENO; standard <= STDERR_FILENO; standard++)
            dup2(files[standard].get(), standard);
        execvp(pointers[0], pointers.data());
        _exit(127);
    }
    int status = -1;
    (void)waitpid(child, &status, 0);
    return {WIFSIGNALED(status) ? 128 + WTERMSIG(status) : WEXITSTATUS(status), content(files[1]), content(files[2])};
}

} // namespace vexa_sim
