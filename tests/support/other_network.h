// SPDX-License-Identifier: MIT
#pragma once

#include "sim/descriptor.h"

#include <fcntl.h>
#include <sched.h>
#include <string>

// A network namespace beside the device's, at the far end of its first cable.
class other_network {
public:
    explicit other_network(const std::string &address) : home_{open("/proc/self/ns/net", O_RDONLY | O_CLOEXEC)}
    {
        const std::string path = "PATH=$PATH:/usr/sbin:/sbin; ";
        working_ = unshare(CLONE_NEWNET) == 0;
        there_ = sim::descriptor{open("/proc/self/ns/net", O_RDONLY)}; // goes to `ip`, too
        working_ &=
            setns(home_.get(), CLONE_NEWNET) == 0 &&
            system((path + "ip link set cable0 netns /proc/self/fd/" + std::to_string(there_.get())).c_str()) == 0;
        inside([&] {
            working_ &= system((path + "ip address add " + address + "/24 dev cable0 && ip link set cable0 up && " +
                                "ip route add default dev cable0")
                                   .c_str()) == 0;
        });
    }

    bool working() const { return working_; }

    // What is opened or started here belongs to the other network.
    template <typename F>
    void inside(F work) const
    {
        (void)setns(there_.get(), CLONE_NEWNET);
        work();
        (void)setns(home_.get(), CLONE_NEWNET);
    }

private:
    sim::descriptor home_, there_;
    bool working_;
};
