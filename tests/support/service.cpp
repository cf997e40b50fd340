// SPDX-License-Identifier: MIT
#include "tests/support/service.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

service::service(std::vector<const char *> command)
{
    command.push_back(nullptr);
    int in[2], out[2];
    EXPECT_EQ(pipe2(in, O_CLOEXEC) | pipe2(out, O_CLOEXEC), 0);
    child_ = fork();
    if (child_ == 0) {
        dup2(in[0], STDIN_FILENO);
        dup2(out[1], STDOUT_FILENO);
        execv(command[0], const_cast<char **>(command.data()));
        _exit(127);
    }
    close(in[0]);
    close(out[1]);
    commands_ = in[1];
    answers_ = out[0];
    await_line();
}

service::~service()
{
    close(commands_);
    close(answers_);
    waitpid(child_, nullptr, 0);
}

void service::tell(const std::string &manners) const
{
    EXPECT_EQ(write(commands_, (manners + '\n').data(), manners.size() + 1), ssize_t(manners.size() + 1));
    await_line();
}

void service::await_line() const
{
    char c = '\0';
    while (read(answers_, &c, 1) == 1 && c != '\n')
        ;
    EXPECT_EQ(c, '\n') << "the service is gone";
}
