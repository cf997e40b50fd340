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
