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
