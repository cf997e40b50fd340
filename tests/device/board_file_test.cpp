// SPDX-License-Identifier: MIT
#include "tests/support/device.h"

namespace {

constexpr char path[] = "/proc/vexahal/board";

// "bomrev boardrevision serialno"; the last ends with the line feed that the library gives.
std::string values()
{
    char serial[16] = "none";
    EXPECT_EQ(get_boardsn(path, serial, sizeof serial), the_device.exists(path) ? 0 : -1);
    EXPECT_EQ(corvo_get_hw_board_id(), corvo_get_bomrev() & 0xffffff00);
    return std::to_string(corvo_get_bomrev()) + " " + std::to_string(get_boardrevision(path)) + " " + serial;
}

std::string values(const char *file)
{
    the_device.put(path, file);
    return values();
}

} // namespace

TEST(board_file, gives_the_last_piece_of_the_last_line)
{
    EXPECT_EQ(values("boardrevision=21\nserialno=0256\nbomrev=0x1a2b3c\n"), "1715004 21 0256\n");
    EXPECT_EQ(values("#bomrev=1\n"), "0 0 \n");
    EXPECT_EQ(values("bomrev=1=ff\r\nboardrevision=-3\r\nserialno=a=b"), "255 -3 b\n") << "several pieces";
    EXPECT_EQ(values("bomrev=1\nbomrev.2=2\nserialno=\n"), "2 0 \n") << "the last line counts";
    EXPECT_EQ(values("serialno\nboardrevision=x\nbomrev=1ffffffff\n"), "4294967295 0 serialno\n") << "no value";
    char serial[6];
    the_device.put(path, "serialno=12345\n");
    for (const int size : {6, 0, -1})
        EXPECT_EQ(get_boardsn(path, serial, size), -1) << size;
    the_device.remove(path);
    EXPECT_EQ(values(), "4294967295 -1 none");
}
