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

} // namespace

TEST(board_file, gives_the_last_piece_of_the_last_line)
{
    constexpr const char *rows[][3] = {
        {"as written by the factory", "boardrevision=21\nserialno=0256\nbomrev=0x1a2b3c\n", "1715004 21 0256\n"},
        {"no such lines", "#bomrev=1\n", "0 0 \n"},
        {"other line ends, several pieces", "bomrev=1=ff\r\nboardrevision=-3\r\nserialno=a=b", "255 -3 b\n"},
        {"the last line counts", "bomrev=1\nbomrev.2=2\nserialno=\n", "2 0 \n"},
        {"no value", "serialno\nboardrevision=x\nbomrev=1ffffffff\n", "4294967295 0 serialno\n"},
    };
    for (const auto &[why, file, expected] : rows) {
        the_device.put(path, file);
        EXPECT_EQ(values(), expected) << why;
    }
    char serial[6];
    the_device.put(path, "serialno=12345\n");
    for (const int size : {6, 0, -1})
        EXPECT_EQ(get_boardsn(path, serial, size), -1) << size;
    the_device.remove(path);
    EXPECT_EQ(values(), "4294967295 -1 none");
}
