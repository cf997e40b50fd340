// SPDX-License-Identifier: MIT
#include "tests/device/broker.h"

#include "tests/support/device.h"

#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>

broker::broker()
{
    constexpr char path[] = "/tmp/bus.json";
    the_device.put(path, R"({"power.outlet": {"status": {"outlet_table": [
        {"index": 1, "name": "A1", "relay_state": true, "outlet_voltage": 121.5}, {"index": 2, "relay_state": false}],
        "outlet_ac_power_budget": 1800, "outlet_ac_energy_7": 5000000000}},
        "power.psu": {"status": {"psu_table": [{"psu_idx": 1, "present": true}]}}})");
    int in[2], out[2];
    EXPECT_EQ(pipe2(in, O_CLOEXEC) | pipe2(out, O_CLOEXEC), 0);
    child_ = fork();
    if (child_ == 0) {
        dup2(in[0], STDIN_FILENO);
        dup2(out[1], STDOUT_FILENO);
        execl(VEXA_BUS, VEXA_BUS, "/var/run/ubus.sock", path, nullptr);
        _exit(127);
    }
    close(in[0]);
    close(out[1]);
    commands_ = in[1];
    answers_ = out[0];
    await_line();
}

broker::~broker()
{
    close(commands_);
    close(answers_);
    waitpid(child_, nullptr, 0);
}

void broker::tell(const std::string &manners) const
{
    EXPECT_EQ(write(commands_, (manners + '\n').data(), manners.size() + 1), ssize_t(manners.size() + 1));
    await_line();
}

void broker::await_line() const
{
    char c = '\0';
    while (read(answers_, &c, 1) == 1 && c != '\n')
        ;
    EXPECT_EQ(c, '\n') << "the broker is gone";
}
