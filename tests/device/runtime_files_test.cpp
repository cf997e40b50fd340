// SPDX-License-Identifier: MIT
#include "tests/support/captured_log.h"
#include "tests/support/device.h"

#include <sys/stat.h>
#include <unistd.h>

TEST(system_internet_status, is_one_digit)
{
    constexpr std::pair<const char *, int> rows[] = {{"1\n", 1}, {"27\n", 2}, {"", 0}, {"x\n", 0}, {"-1\n", 0}};
    for (const auto &[file, expected] : rows) {
        the_device.put("/var/run/system.internet", file);
        EXPECT_EQ(system_internet_status(), expected) << file;
    }
    the_device.remove("/var/run/system.internet");
    EXPECT_EQ(system_internet_status(), -1);
}

TEST(system_dhcp_status, numbers_the_states)
{
    constexpr std::pair<const char *, int> rows[] = {{"deconfig\n", 1}, {"leasefail", 2}, {"bound\n", 3}, {"renew", 4},
                                                     {"bound \n", 0},   {"Bound\n", 0},   {"", 0}};
    for (const auto &[file, expected] : rows) {
        the_device.put("/var/run/dhcpc.last_state", file);
        EXPECT_EQ(system_dhcp_status(), expected) << file;
    }
    the_device.remove("/var/run/dhcpc.last_state");
    EXPECT_EQ(system_dhcp_status(), 0);
}

TEST(system_is_ssh, looks_for_a_listener_on_port_22)
{
    const std::string row = "   0: 00000000:", rest = " 00000000:00000000 00:00000000 00000000     0        0 4711\n";
    the_device.put("/proc/net/tcp", row + "0016 0A0B0C0D:1234 01" + rest + row + "0050 00000000:0000 0A" + rest);
    EXPECT_EQ(system_is_ssh(), 0) << "a connection, another port";
    the_device.put("/proc/net/tcp", row + "0050 00000000:0000 0A" + rest + row + "0016 00000000:0000 0A" + rest);
    EXPECT_EQ(system_is_ssh(), 1);
}

TEST(touch_file, makes_a_file_of_the_mode)
{
    struct stat info;
    umask(077);
    EXPECT_EQ(touch_file("/tmp/mark", 0664), 0);
    ASSERT_EQ(stat("/tmp/mark", &info), 0);
    EXPECT_EQ(info.st_mode, mode_t{S_IFREG | 0664});
    the_device.put("/tmp/mark", "kept");
    EXPECT_EQ(touch_file("/tmp/mark", 0600), 0);
    EXPECT_EQ(the_device.text("/tmp/mark"), "kept");
    ASSERT_EQ(mkfifo("/tmp/fifo", 0600), 0);
    const captured_log log;
    EXPECT_EQ(touch_file("/tmp/none/mark", 0600), -1);
    EXPECT_EQ(touch_file("/tmp", 0600), -1);
    EXPECT_EQ(touch_file("/tmp/fifo", 0600), -1) << "nothing waits for a reader";
    EXPECT_EQ(log.text(), "[error] libvexa_status.touch_file(): /tmp/none/mark - 2/No such file or directory\n"
                          "[error] libvexa_status.touch_file(): /tmp - 21/Is a directory\n"
                          "[error] libvexa_status.touch_file(): /tmp/fifo - 6/No such device or address\n");
}

TEST(system_switches, are_files_or_their_words)
{
    constexpr char mark[] = "/var/run/mark", word[] = "/proc/vexahal/status/IsDefault";
    EXPECT_EQ(system_is_xxx(mark, 0), 0);
    EXPECT_EQ(system_is_xxx(mark, 7), 7);
    EXPECT_EQ(system_set_xxx(mark, 2), 0);
    EXPECT_EQ(the_device.text(mark), "true\n");
    the_device.put(mark, "false\n");
    EXPECT_EQ(system_is_xxx(mark, 0), 1) << "being there is enough";
    for (int time = 0; time < 2; time++)
        EXPECT_EQ(system_set_xxx(mark, 0), 0) << "also when it is gone";
    EXPECT_FALSE(the_device.exists(mark));

    for (const int value : {1, 0}) {
        EXPECT_EQ(system_set_xxx(word, value), 0);
        EXPECT_EQ(the_device.text(word), value ? "true\n" : "false\n");
        EXPECT_EQ(system_is_xxx(word, !value), value);
    }
    the_device.put(word, "truest\n");
    EXPECT_EQ(system_is_xxx(word, 1), 0);
    the_device.put(word, "");
    EXPECT_EQ(system_is_xxx(word, 1), 1) << "no line: the default";
    EXPECT_EQ(system_set_value(mark, "50%"), 0);
    EXPECT_EQ(the_device.text(mark), "50%\n");
    EXPECT_EQ(system_set_value("/tmp/none/mark", "x"), -1);
}

TEST(get_version, is_kept_once_it_is_known)
{
    const char *version = nullptr;
    const std::string release = "/usr/etc/.version", build = "/usr/etc/.build";
    the_device.remove(build);
    EXPECT_EQ(get_version(&version), -ENOENT);
    EXPECT_STREQ(version, "unknown.0");
    the_device.put(build, "\n");
    EXPECT_EQ(get_version(&version), -EINVAL);
    the_device.put(build, "");
    EXPECT_EQ(get_version(&version), -EINVAL);
    EXPECT_STREQ(version, "unknown.0");
    the_device.put(release, std::string(70, '6') + "\n");
    the_device.put(build, "15402\nmore\n");
    EXPECT_EQ(get_version(&version), 0);
    EXPECT_EQ(version, std::string(63, '6')) << "cut";
    the_device.remove(release);
    EXPECT_EQ(get_version(&version), 0);
    EXPECT_EQ(version, std::string(63, '6'));
}
