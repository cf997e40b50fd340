// SPDX-License-Identifier: MIT
#pragma once

#include "tests/support/device.h"
#include "tests/support/other_network.h"

#include <csignal>
#include <filesystem>
#include <sys/wait.h>

inline constexpr char lldp_client[] = "/usr/local/bin/lldpcli"; // in front of the machine's
inline constexpr char lldp_path[] = "/usr/local/bin:/usr/sbin:/usr/bin:/sbin:/bin";

// The machine's LLDP daemon on the device, and a second one at the far end of its first cable, which announces itself
// under a description. Both end with this.
class lldp_neighbour {
public:
    explicit lldp_neighbour(const char *description) : far_{"192.0.2.1"}
    {
        setenv("PATH", lldp_path, 1);
        if (getuid() != 0 || system("command -v lldpd >/dev/null") != 0)
            trouble_ = "needs the LLDP daemon, and root to run it";
        else if (!far_.working())
            trouble_ = "the kernel refuses a second network";
        if (!trouble_.empty())
            return;
        the_device.remove(lldp_client);
        the_device.put("/etc/lldpd.d/often.conf", "configure lldp tx-interval 1\n"); // who comes later hears it, too
        std::filesystem::create_directory("/run/lldpd");
        far_.inside([&] { start({"lldpd", "-d", "-u", "/run/far", "-S", description, "-I", "cable0", nullptr}); });
        start({"lldpd", "-d", "-I", "eth0", nullptr});
    }
    lldp_neighbour(const lldp_neighbour &) = delete;
    lldp_neighbour &operator=(const lldp_neighbour &) = delete;
    ~lldp_neighbour()
    {
        for (const pid_t daemon : daemons_) {
            kill(daemon, SIGTERM);
            waitpid(daemon, nullptr, 0);
        }
    }

    const std::string &trouble() const { return trouble_; } // why it cannot be, empty when it is

private:
    void start(std::vector<const char *> command)
    {
        const pid_t child = fork();
        if (child == 0) {
            dup2(open("/dev/null", O_WRONLY), STDERR_FILENO);
            execvp(command[0], const_cast<char **>(command.data()));
            _exit(127);
        }
        daemons_.push_back(child);
    }

    other_network far_;
    std::string trouble_;
    std::vector<pid_t> daemons_;
};
