// SPDX-License-Identifier: MIT
#include "tests/support/device.h"

TEST(board_file, gives_the_last_piece_of_the_last_line)
{
    const struct {
        const char *why, *file;
        uint32_t bomrev;
        int revision;
        const char *serial;
    } rows[] = {
        {"as written by the factory", "boardrevision=21\nserialno=0256\nbomrev=0x1a2b3c\n", 0x1a2b3c, 21, "0256\n"},
        {"no such lines", "#bomrev=1\n", 0, 0, "\n"},
        {"other line ends, several pieces", "bomrev=1=ff\r\nboardrevision=-3\r\nserialno=a=b", 0xff, -3, "b\n"},
        {"the last line counts", "bomrev=1\nbomrev.2=2\nserialno=\n", 2, 0, "\n"},
        {"a line without a value", "serialno\nboardrevision=x\nbomrev=1ffffffff\n", UINT32_MAX, 0, "serialno\n"},
    };
    for (const auto &row : rows) {
        SCOPED_TRACE(row.why);
        char serial[16] = "";
        the_device.put("/proc/vexahal/board", row.file);
        EXPECT_EQ(corvo_get_bomrev(), row.bomrev);
        EXPECT_EQ(corvo_get_hw_board_id(), row.bomrev & 0xffffff00);
        EXPECT_EQ(get_boardrevision("/proc/vexahal/board"), row.revision);
        EXPECT_EQ(get_boardsn("/proc/vexahal/board", serial, sizeof serial), 0);
        EXPECT_STREQ(serial, row.serial);
    }
    char serial[6] = "";
    the_device.put("/tmp/board", "serialno=12345\n");
    for (const int size : {6, 0, -1})
        EXPECT_EQ(get_boardsn("/tmp/board", serial, size), -1) << size;
    the_device.remove("/proc/vexahal/board");
    EXPECT_EQ(corvo_get_bomrev(), UINT32_MAX);
    EXPECT_EQ(corvo_get_hw_board_id(), 0xffffff00);
    EXPECT_EQ(get_boardrevision("/proc/vexahal/board"), -1);
    EXPECT_EQ(get_boardsn("/proc/vexahal/board", serial, sizeof serial), -1);
}
