// SPDX-License-Identifier: MIT
#include "core/owner.h"
#include "tests/support/device.h"

#include <unistd.h>

namespace {

constexpr size_t size = 65536;

// The first byte of what is read; 0 when nothing is.
char eeprom(const std::string &partitions)
{
    the_device.put("/proc/mtd", partitions);
    const unique_buffer read{vexa_read_eeprom()};
    EXPECT_TRUE(!read || read->len(read.get()) == size);
    return read ? *static_cast<char *>(read->head(read.get())) : '\0';
}

} // namespace

TEST(vexa_read_eeprom, finds_the_partition)
{
    the_device.put("/dev/mtd12", std::string(size + 1, 'a'));
    the_device.put("/dev/mtd/7", std::string(size, 'b'));
    the_device.put("/dev/mtd3", std::string(size - 1, 'c'));
    the_device.put("/tmp/EEPROM", std::string(size, 'd'));
    ASSERT_EQ(chdir("/tmp"), 0);
    EXPECT_EQ(eeprom("mtd12: 0 1 \"eEprom\"\nmtd3: 0 1 \"EEPROM\"\n"), 'a') << "the first, whatever its case";
    EXPECT_EQ(eeprom("mtd1: 0 1 \"EEPROM 2\"\nmtd7: 0 1 \"EEPROM\"\n"), 'b') << "a device in a folder";
    EXPECT_EQ(eeprom("mtd3: 0 1 \"EEPROM\"\n"), '\0') << "too short";
    EXPECT_EQ(eeprom("mtd99: 0 1 \"EEPROM\"\n"), '\0') << "not there";
    EXPECT_EQ(eeprom("mtd12: 0 1 \"firmware\"\nmtd7: \"EEPROM\"\n"), 'd') << "no partition of the name";
    EXPECT_EQ(eeprom(std::string(10'000'000, 'm')), 'd') << "no end of lines";
    the_device.remove("/tmp/EEPROM");
    EXPECT_EQ(vexa_read_eeprom(), nullptr);
    ASSERT_EQ(chdir("/"), 0);
}
