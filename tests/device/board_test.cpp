// SPDX-License-Identifier: MIT
#include "tests/support/device.h"

namespace {

constexpr char info[] = "/proc/vexahal/system.info", partition[] = "/dev/mtd2";

// The result, vendor and system; 9 is what stays untouched.
std::array<int, 3> ids(const char *file)
{
    the_device.put(info, file);
    uint16_t vendor = 9, system = 9;
    const int result = board_identify_ids(&vendor, &system);
    return {result, vendor, system};
}

// What the copy says after the files have changed: the hardware address, the revision and whether there is a QR code.
std::string completed()
{
    uint8_t mac[6];
    char text[40];
    get_board();
    EXPECT_EQ(board_get_cpu_mac(mac), 0);
    snprintf(text, sizeof text, "%02x:%02x:%02x:%02x:%02x:%02x %d %d", mac[0], mac[1], mac[2], mac[3], mac[4], mac[5],
             board_identify()->hw_rev, corvo_board_has_qrcode());
    return text;
}

} // namespace

TEST(board_identify_ids, takes_the_last_line_of_each_kind)
{
    using answer = std::array<int, 3>;
    EXPECT_EQ(ids("vendorid=0777\nsystemid=a620\n"), (answer{0, 0x777, 0xa620}));
    EXPECT_EQ(ids("systemid=1\nvendorid=ffff0777\nsystemid=0x12a611 \n"), (answer{0, 0x777, 0xa611})) << "16 bits";
    EXPECT_EQ(ids("systemid=a620\nxvendorid=0777\n"), (answer{-1, 9, 0xa620})) << "only one of them";
    EXPECT_EQ(ids("vendorid=\nsystemid=x\n"), (answer{-1, 9, 9})) << "no number";
    the_device.remove(info);
    uint16_t id;
    EXPECT_EQ(board_identify_ids(&id, &id), -ENOENT);
}

TEST(get_board, refreshes_one_copy_and_keeps_it_for_unknown_devices)
{
    board *copy = get_board();
    ASSERT_NE(copy, nullptr);
    EXPECT_EQ(copy->system_id, 0xa620);
    the_device.put(info, "vendorid=0777\nsystemid=e990\n");
    EXPECT_EQ(corvo_identify(), copy);
    EXPECT_EQ(copy->system_id, 0xa620) << "no look at the file while there is a copy";
    for (const char *unknown : {"vendorid=0777\nsystemid=e502\n", "vendorid=1\nsystemid=a620\n", "systemid=a620\n"}) {
        EXPECT_EQ(get_board(), copy);
        EXPECT_STREQ(copy->name, corvo_get_board(0xe990)->name);
        the_device.put(info, unknown);
    }
    EXPECT_EQ(get_board(), copy);
    EXPECT_EQ(copy->system_id, 0xe990);
}

TEST(get_board, completes_the_copy_from_the_factory_data)
{
    ASSERT_NE(get_board(), nullptr);
    update_cached_board(nullptr);
    EXPECT_EQ(completed(), "02:56:58:00:10:01 21 1");
    EXPECT_EQ(corvo_get_board(0xa620)->hw_rev, 0) << "of the model";

    std::string image = the_device.text(partition);
    image.replace(0, 6, "\x02\x56\x58\x01\x02\x03");
    image.replace(0x10, 4, "\xff\xff\xff\xfe");
    image.replace(0x20, 64, std::string(64, '\0'));
    the_device.put(partition, image);
    EXPECT_EQ(completed(), "02:56:58:01:02:03 -2 0");

    the_device.put(info, "vendorid=0777\nsystemid=a620\neth0.macaddr=02:56:58:0A:0B:0C\n");
    for (const char blank : {'\xff', '\0'}) {
        the_device.put(partition, std::string(65536, blank));
        EXPECT_EQ(completed(), "02:56:58:0a:0b:0c 0 0");
    }
    the_device.remove(partition);
    the_device.put(info, "vendorid=0777\nsystemid=a620\n");
    EXPECT_EQ(completed(), "00:00:00:00:00:00 0 0");
    EXPECT_EQ(board_get_cpu_mac(nullptr), -1);
}
