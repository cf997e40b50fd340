// SPDX-License-Identifier: MIT
#pragma once

#include "core/owner.h"

#include <sys/types.h>

// A command line that the shell runs beside this process, which reads what it prints. It does not outlive its owner.
class shell_command {
public:
    explicit shell_command(const char *line) noexcept;
    shell_command(const shell_command &) = delete;
    shell_command &operator=(const shell_command &) = delete;
    ~shell_command();

    explicit operator bool() const noexcept { return child_ > 0; }
    int output() const noexcept { return output_.get(); }

private:
    unique_fd output_;
    pid_t child_ = -1;
};
