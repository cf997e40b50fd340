// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <sys/types.h>
#include <vector>

// A process of the simulated device that says when it is ready, does what it is told and ends with this.
class service {
public:
    explicit service(std::vector<const char *> command);
    service(const service &) = delete;
    service &operator=(const service &) = delete;
    ~service();

    void tell(const std::string &manners) const; // returns when the service behaves so

private:
    void await_line() const;

    int commands_, answers_;
    pid_t child_;
};
