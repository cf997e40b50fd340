// SPDX-License-Identifier: MIT
#include "core/owner.h"
#include "tests/support/device.h"

#include <unistd.h>

TEST(vexa_read_eeprom, finds_the_partition)
{
    constexpr size_t size = 65536;
    the_device.put("/dev/mtd12", std::string(size + 1, 'a'));
    the_device.put("/dev/mtd/7", std::string(size, 'b'));
    the_device.put("/dev/mtd3", std::string(size - 1, 'c'));
    the_device.put("/tmp/EEPROM", std::string(size, 'd'));
    ASSERT_EQ(chdir("/tmp"), 0);
    const struct {
        const char *why;
        std::string table;
        char first; // byte of what is read; 0: nothing is
    } rows[] = {
        {"the first of the name, whatever its case", "mtd12: 0 1 \"eEprom\"\nmtd3: 0 1 \"EEPROM\"\n", 'a'},
        {"a device in a folder", "mtd1: 0 1 \"EEPROM 2\"\nmtd7: 0 1 \"EEPROM\"\n", 'b'},
        {"too short", "mtd3: 0 1 \"EEPROM\"\n", '\0'},
        {"a partition that is not there", "mtd99: 0 1 \"EEPROM\"\n", '\0'},
        {"no partition of the name", "mtd12: 0 1 \"firmware\"\nmtd7: \"EEPROM\"\n", 'd'},
        {"no end of lines", std::string(10'000'000, 'm'), 'd'},
    };
    for (const auto &row : rows) {
        the_device.put("/proc/mtd", row.table);
        const unique_buffer read{vexa_read_eeprom()};
        EXPECT_EQ(read ? *static_cast<char *>(read->head(read.get())) : '\0', row.first) << row.why;
        EXPECT_EQ(read ? read->len(read.get()) : size, size) << row.why;
    }
    the_device.remove("/tmp/EEPROM");
    EXPECT_EQ(vexa_read_eeprom(), nullptr);
    ASSERT_EQ(chdir("/"), 0);
}
