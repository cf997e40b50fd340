// SPDX-License-Identifier: MIT
#include "tests/support/device.h"

namespace {

constexpr char info[] = "/proc/vexahal/system.info";

std::string cpu_mac()
{
    uint8_t mac[6];
    char text[18];
    EXPECT_EQ(board_get_cpu_mac(mac), 0);
    snprintf(text, sizeof text, "%02x:%02x:%02x:%02x:%02x:%02x", mac[0], mac[1], mac[2], mac[3], mac[4], mac[5]);
    return text;
}

} // namespace

TEST(board_identify_ids, takes_the_last_line_of_each_kind)
{
    const struct {
        const char *why, *file;
        int result, vendor, system; // 9: untouched
    } rows[] = {
        {"both", "vendorid=0777\nsystemid=a620\n", 0, 0x777, 0xa620},
        {"the low 16 bits of the last", "systemid=1\nvendorid=ffff0777\nsystemid=0x12a611 \n", 0, 0x777, 0xa611},
        {"only one of them", "systemid=a620\nxvendorid=0777\n", -1, 9, 0xa620},
        {"no number", "vendorid=\nsystemid=x\n", -1, 9, 9},
    };
    for (const auto &row : rows) {
        SCOPED_TRACE(row.why);
        the_device.put(info, row.file);
        uint16_t vendor = 9, system = 9;
        EXPECT_EQ(board_identify_ids(&vendor, &system), row.result);
        EXPECT_EQ(vendor, row.vendor);
        EXPECT_EQ(system, row.system);
    }
    the_device.remove(info);
    uint16_t id;
    EXPECT_EQ(board_identify_ids(&id, &id), -ENOENT);
}

TEST(get_board, refreshes_one_copy_and_keeps_it_for_unknown_devices)
{
    board *copy = get_board();
    ASSERT_NE(copy, nullptr);
    EXPECT_EQ(copy->system_id, 0xa620);
    EXPECT_NE(copy, corvo_get_board(0xa620));
    the_device.put(info, "vendorid=0777\nsystemid=e990\n");
    EXPECT_EQ(corvo_identify(), copy);
    EXPECT_EQ(copy->system_id, 0xa620) << "no look at the file while there is a copy";
    EXPECT_EQ(get_board(), copy);
    EXPECT_EQ(copy->system_id, 0xe990);
    EXPECT_STREQ(copy->name, corvo_get_board(0xe990)->name);
    for (const char *unknown : {"vendorid=0777\nsystemid=e502\n", "vendorid=1\nsystemid=a620\n", "systemid=a620\n"}) {
        the_device.put(info, unknown);
        EXPECT_EQ(get_board(), copy) << unknown;
        EXPECT_EQ(copy->system_id, 0xe990) << unknown;
    }
}

TEST(get_board, completes_the_copy_from_the_factory_data)
{
    ASSERT_NE(get_board(), nullptr);
    update_cached_board(nullptr);
    EXPECT_EQ(cpu_mac(), "02:56:58:00:10:01");
    EXPECT_EQ(board_identify()->hw_rev, 21);
    EXPECT_EQ(corvo_get_board(0xa620)->hw_rev, 0) << "of the model";
    EXPECT_EQ(corvo_board_has_qrcode(), 1);

    std::string image = the_device.text("/dev/mtd2");
    image.replace(0, 6, "\x02\x56\x58\x01\x02\x03");
    image.replace(0x10, 4, "\xff\xff\xff\xfe");
    image.replace(0x20, 64, std::string(64, '\0'));
    the_device.put("/dev/mtd2", image);
    get_board();
    EXPECT_EQ(cpu_mac(), "02:56:58:01:02:03");
    EXPECT_EQ(board_identify()->hw_rev, -2);
    EXPECT_EQ(corvo_board_has_qrcode(), 0);

    const std::string mac_line = "eth0.macaddr=02:56:58:0A:0B:0C\n";
    for (const char blank : {'\xff', '\0'}) {
        the_device.put(info, "vendorid=0777\nsystemid=a620\n" + mac_line);
        the_device.put("/dev/mtd2", std::string(65536, blank));
        get_board();
        EXPECT_EQ(cpu_mac(), "02:56:58:0a:0b:0c");
        EXPECT_EQ(board_identify()->hw_rev, 0);
        EXPECT_EQ(corvo_board_has_qrcode(), 0);
    }
    the_device.remove("/dev/mtd2");
    the_device.put(info, "vendorid=0777\nsystemid=a620\n");
    get_board();
    EXPECT_EQ(cpu_mac(), "00:00:00:00:00:00");
    EXPECT_EQ(corvo_board_has_qrcode(), 0);
}
