// SPDX-License-Identifier: MIT
#include "tests/support/device.h"
#include "tests/support/program.h"

#include <filesystem>
#include <net/if.h>

namespace fs = std::filesystem;

TEST(simulated_device, takes_a_file_anywhere_and_keeps_what_stands_beside_it)
{
    const struct {
        const char *why, *file, *neighbour;
    } rows[] = {
        {"a file of the device", "/proc/vexahal/board", "/proc/vexahal/system.info"},
        {"a file of the kernel", "/proc/meminfo", "/proc/self/status"},
        {"below a link that differs from process to process", "/proc/net/arp", "/proc/net/dev"},
        {"a folder that the kernel does not have", "/proc/net/new/table", "/proc/net/tcp"},
        {"a device of the kernel", "/sys/bus/i2c/devices/1-0018/iio:device0/in_accel_x_raw",
         "/sys/class/net/br0/bridge/stp_state"},
        {"a folder of the machine", "/usr/etc/.version", "/usr/bin/env"},
        {"beside the folders of programs", "/usr/new/file", "/usr/lib/os-release"},
        {"a folder that the machine does not have", "/etc/persistent/cfg/mgmt", "/etc/mtab"}, // a link that leads out
        {"folders that start empty", "/var/run/guest/portal/a", "/tmp/system.cfg"},
    };
    for (const auto &row : rows) {
        SCOPED_TRACE(row.why);
        the_device.put(row.file, "text\n");
        EXPECT_EQ(the_device.text(row.file), "text\n");
        EXPECT_NE(the_device.text(row.neighbour), "");
    }
    EXPECT_NE(run_program({"cat", "/proc/net/dev"}).out.find("br0:"), std::string::npos);
    EXPECT_THROW(the_device.put("/new/file", ""), sim::error);
}

TEST(simulated_device, runs_stand_ins_for_commands_of_the_firmware)
{
    the_device.put("/bin/qos_control.sh", "#!/bin/sh\necho \"asked for $*\"\n", 0755);
    EXPECT_EQ(run_program({"/bin/qos_control.sh", "add", "1"}).out, "asked for add 1\n");
}

TEST(simulated_device, restores_what_was_there_at_first)
{
    const std::string identity = the_device.text("/proc/vexahal/board");
    the_device.remove("/etc/passwd");
    the_device.remove("/proc/meminfo");
    the_device.remove("/proc/vexahal");
    the_device.put("/tmp/folder/file", "");
    the_device.put("/dev/kmsg", "lines");
    EXPECT_FALSE(the_device.exists("/etc/passwd") || the_device.exists("/proc/meminfo"));
    the_device.restore();
    EXPECT_EQ(the_device.text("/proc/vexahal/board"), identity);
    EXPECT_TRUE(the_device.exists("/etc/passwd") && the_device.exists("/proc/meminfo"));
    EXPECT_FALSE(the_device.exists("/tmp/folder"));
    EXPECT_EQ(the_device.text("/dev/kmsg"), "");
}

TEST(simulated_device, has_interfaces_that_are_the_kernels)
{
    for (const char *name : {"lo", "br0", "eth0", "eth1", "cable0", "cable1"})
        EXPECT_NE(if_nametoindex(name), 0U) << name;
    EXPECT_TRUE(the_device.exists("/sys/class/net/br0/brif/eth0"));
    EXPECT_EQ(run_program({"ip", "link", "add", "br1", "type", "bridge"}).status, 0);
    EXPECT_TRUE(the_device.exists("/sys/class/net/br1/bridge"));
}

TEST(simulated_device, gives_each_process_that_it_starts_its_own_place_in_proc)
{
    EXPECT_EQ(run_program({"sh", "-c", "cat /proc/$$/comm"}).out, "sh\n");
    EXPECT_EQ(fs::read_symlink("/proc/self/exe"), fs::read_symlink("/proc/" + std::to_string(getpid()) + "/exe"));
}
