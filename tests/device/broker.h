// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <sys/types.h>

// The simulated device's bus: a broker process behind "/var/run/ubus.sock" that does what it is told.
class broker {
public:
    broker();
    broker(const broker &) = delete;
    broker &operator=(const broker &) = delete;
    ~broker();

    void tell(const std::string &manners) const; // returns when the broker behaves so

private:
    void await_line() const;

    int commands_, answers_;
    pid_t child_;
};
