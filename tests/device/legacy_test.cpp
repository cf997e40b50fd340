// SPDX-License-Identifier: MIT
#include "tests/support/device.h"

const runs_on legacy{{.device = "legacy"}};

TEST(board_identify, describes_a_legacy_board_until_there_is_an_identity)
{
    EXPECT_EQ(get_board(), nullptr);
    const board *b = board_identify();
    EXPECT_STREQ(map_board_name(b), "Unknown");
    ASSERT_EQ(b->radio_count, 2);
    EXPECT_STREQ(b->radios[1].chip, "Unknown");
    EXPECT_EQ(b->radios[1].bus_vendor_id, 0x168c);
    EXPECT_EQ(b->radios[0].subsystem_id, 0x0930) << "swapped";
    EXPECT_EQ(b->radios[1].subsystem_vendor_id, 0x8c16);
    EXPECT_STREQ(get_radio_dev_name(0), "");
    EXPECT_EQ(get_main_phy(), nullptr);
    EXPECT_EQ(get_num_of_eth_ports() + board_has_poe() + is_gen1() + is_gen2() + is_gen3() + is_zel5() + is_zel6(), 0);

    std::string bus;
    for (int slot = 0; slot < 6; slot++)
        bus += "000" + std::to_string(slot) + " 168c0001 5\n";
    the_device.put("/proc/bus/pci/devices", bus);
    update_cached_board(nullptr);
    EXPECT_EQ(board_identify()->radio_count, 4) << "no more than there is room for";
    the_device.put("/proc/vexahal/system.info", "vendorid=0777\nsystemid=a643\n");
    EXPECT_EQ(board_identify(), b) << "the answer is kept";
    update_cached_board(nullptr);
    EXPECT_EQ(board_identify()->system_id, 0xa643);
}

TEST(pci_detect, tells_the_devices_of_a_vendor)
{
    const auto place = [](const pci_dev &d) { return std::tuple(d.bus, d.slot, d.function, d.device_id); };
    const auto kind = [](const pci_dev &d) { return std::tuple(d.subsystem_id, d.subsystem_vendor_id, d.revision); };
    pci_dev found[3]{};
    ASSERT_EQ(pci_detect(found, 3, 0x168c), 2);
    EXPECT_EQ(place(found[1]), std::tuple(0, 1, 0, 0x002a));
    EXPECT_EQ(kind(found[1]), std::tuple(0x0530, 0x8c16, 1));
    EXPECT_EQ(found[1].irq, 0x31U);
    EXPECT_EQ(pci_detect(found, 1, 0x168c), 1);
    for (const int none : {0, -1})
        EXPECT_EQ(pci_detect(nullptr, none, 0x168c), 0);
    EXPECT_EQ(pci_detect(found, 3, 0x8086), 0);

    the_device.put("/proc/bus/pci/devices", "zz\n02fa 168c00ff\n02fa 168c00ff 10\n");
    the_device.put("/proc/bus/pci/02/1f.2", std::string(47, '\1'));
    ASSERT_EQ(pci_detect(found, 3, 0x168c), 1);
    EXPECT_EQ(place(found[0]), std::tuple(2, 31, 2, 0xff));
    EXPECT_EQ(kind(found[0]), std::tuple(0, 0, 0)) << "of a short file";
    the_device.remove("/proc/bus/pci/devices");
    EXPECT_EQ(pci_detect(found, 3, 0x168c), -1);
}
