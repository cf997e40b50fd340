// SPDX-License-Identifier: MIT
#include "tests/support/captured_log.h"
#include "tests/support/device.h"

#include <sys/stat.h>
#include <unistd.h>

TEST(system_switches, are_files_or_their_words)
{
    constexpr char mark[] = "/var/run/mark", word[] = "/proc/vexahal/status/IsDefault";
    EXPECT_EQ(system_is_xxx(mark, 7), 7);
    EXPECT_EQ(system_set_xxx(mark, 2), 0);
    EXPECT_EQ(the_device.text(mark), "true\n");
    EXPECT_EQ(system_set_value(mark, "50%"), 0);
    EXPECT_EQ(the_device.text(mark), "50%\n");
    EXPECT_EQ(system_is_xxx(mark, 0), 1) << "being there is enough";
    for (int time = 0; time < 2; time++)
        EXPECT_EQ(system_set_xxx(mark, 0), 0) << "also when it is gone";
    EXPECT_FALSE(the_device.exists(mark));
    EXPECT_EQ(system_set_value("/tmp/none/mark", "x"), -1);

    for (const int value : {1, 0}) {
        EXPECT_EQ(system_set_xxx(word, value), 0);
        EXPECT_EQ(the_device.text(word), value ? "true\n" : "false\n");
        EXPECT_EQ(system_is_xxx(word, !value), value);
    }
    the_device.put(word, "truest\n");
    EXPECT_EQ(system_is_xxx(word, 1), 0);
    the_device.put(word, "");
    EXPECT_EQ(system_is_xxx(word, 1), 1) << "no line: the default";
}

TEST(runtime_files, are_told_as_numbers)
{
    const auto told = [](const char *file, const char *text, int (*read)()) {
        the_device.put(file, text);
        return read();
    };
    constexpr char internet[] = "/var/run/system.internet", dhcp[] = "/var/run/dhcpc.last_state";
    constexpr char tcp[] = "/proc/net/tcp", mgmt[] = "/etc/persistent/cfg/mgmt";
    EXPECT_EQ(told(internet, "27\n", system_internet_status), 2);
    EXPECT_EQ(told(internet, "-1\n", system_internet_status), 0);
    EXPECT_EQ(told(dhcp, "leasefail", system_dhcp_status), 2);
    EXPECT_EQ(told(dhcp, "renew\n", system_dhcp_status), 4);
    EXPECT_EQ(told(dhcp, "bound \n", system_dhcp_status), 0);
    EXPECT_EQ(told(tcp, "0: 00000000:0016 0A0B0C0D:1234 01 \n1: 00000000:0050 00000000:0000 0A \n", system_is_ssh), 0);
    EXPECT_EQ(told(tcp, "0: 00000000:0050 00000000:0000 0A \n1: 00000000:0016 00000000:0000 0A \n", system_is_ssh), 1);
    EXPECT_EQ(told("/proc/uptime", "-3.5\n", [] { return int(get_uptime_from_proc()); }), -3);
    EXPECT_EQ(told(mgmt, "mgmt.is_setup_completed = no\n", is_qm_setup_complete), 1);
    EXPECT_EQ(told(mgmt, "mgmt.is_setup_completed=false\n", is_qm_setup_complete), 0);
}

TEST(touch_file, makes_a_file_of_the_mode_and_waits_for_nobody)
{
    struct stat info;
    umask(077);
    EXPECT_EQ(touch_file("/tmp/mark", 0664), 0);
    ASSERT_EQ(stat("/tmp/mark", &info), 0);
    EXPECT_EQ(info.st_mode, mode_t{S_IFREG | 0664});
    ASSERT_EQ(mkfifo("/tmp/fifo", 0600), 0);
    const captured_log log;
    EXPECT_EQ(touch_file("/tmp/fifo", 0600), -1);
    EXPECT_EQ(log.text(), "[error] libvexa_status.touch_file(): /tmp/fifo - 6/No such device or address\n");
}
