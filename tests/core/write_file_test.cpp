// SPDX-License-Identifier: MIT
#include "tests/support/device.h"

#include <fcntl.h>
#include <sys/stat.h>

constexpr char path[] = "/tmp/state";

TEST(fwriteline, replaces_the_file_and_notices_a_full_disk)
{
    the_device.put(path, "something longer\n");
    EXPECT_EQ(fwriteline(path, "%s=%d\n", "key", 1), 6);
    EXPECT_EQ(the_device.text(path), "key=1\n");
    EXPECT_EQ(fwritelongat(AT_FDCWD, path, -5), 0);
    EXPECT_EQ(the_device.text(path), "-5\n");
    EXPECT_EQ(fwriteline("/dev/full", "x"), -1);
    EXPECT_EQ(fwritelongat(AT_FDCWD, "/dev/full", 1), -1);
    EXPECT_EQ(faddlong("/dev/full", 1), -1);
}

TEST(faddlong, adds_to_what_it_can_read)
{
    constexpr const char *rows[][4] = {{"a prefix", "0x10\n", "2\n", "18\n"},
                                       {"an empty file counts from 0", "", "2\n", "2\n"},
                                       {"nothing of the old text stays", "000000000000001\nmore\n", "3\n", "3\n"}};
    for (const auto &[why, before, decimal, any_base] : rows) {
        the_device.put(path, before);
        EXPECT_EQ(faddlong(path, 2), 0);
        EXPECT_EQ(the_device.text(path), decimal) << why;
        the_device.put(path, before);
        EXPECT_EQ(faddlongat(AT_FDCWD, path, 2), 0);
        EXPECT_EQ(the_device.text(path), any_base) << why;
    }
    EXPECT_EQ(faddi64at(AT_FDCWD, "/tmp/fresh", INT64_MAX), 0);
    EXPECT_EQ(the_device.text("/tmp/fresh"), "9223372036854775807\n");
    struct stat info;
    EXPECT_TRUE(stat("/tmp/fresh", &info) == 0 && info.st_mode == (S_IFREG | 0600));
    ASSERT_EQ(mkfifo("/tmp/fifo", 0600), 0);
    EXPECT_EQ(faddi64at(AT_FDCWD, "/tmp/fifo", 1), -1) << "it cannot be cut off, and nothing waits for it";
}
