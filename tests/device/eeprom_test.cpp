// SPDX-License-Identifier: MIT
#include "tests/support/device.h"

#include <unistd.h>

namespace {

// How many bytes were read, and the first of them; "none" without a buffer.
std::string eeprom()
{
    buffer *b = vexa_read_eeprom();
    if (!b)
        return "none";
    std::string text = std::to_string(b->len(b)) + *static_cast<char *>(b->head(b));
    buffer_destroy(b);
    return text;
}

} // namespace

TEST(vexa_read_eeprom, finds_the_partition)
{
    constexpr size_t size = 65536;
    the_device.put("/dev/mtd12", std::string(size + 1, 'a'));
    the_device.put("/dev/mtd/7", std::string(size, 'b'));
    the_device.put("/dev/mtd3", std::string(size - 1, 'c'));
    the_device.put("/tmp/EEPROM", std::string(size, 'd'));
    ASSERT_EQ(chdir("/tmp"), 0);
    const std::string heading = "dev:    size   erasesize  name\n";
    const struct {
        const char *why;
        std::string table, found;
    } rows[] = {
        {"the first of the name, whatever its case", "mtd12: 0 1 \"eEprom\"\nmtd3: 0 1 \"EEPROM\"\n", "65536a"},
        {"a device in a folder", "mtd1: 0 1 \"EEPROM 2\"\nmtd7: 0 1 \"EEPROM\"\n", "65536b"},
        {"too short", "mtd3: 0 1 \"EEPROM\"\n", "none"},
        {"a partition that is not there", "mtd99: 0 1 \"EEPROM\"\n", "none"},
        {"no partition of the name", "mtd12: 0 1 \"firmware\"\nmtd7: \"EEPROM\"\n", "65536d"},
        {"no end of lines", std::string(10'000'000, 'm'), "65536d"},
    };
    for (const auto &row : rows) {
        the_device.put("/proc/mtd", heading + row.table);
        EXPECT_EQ(eeprom(), row.found) << row.why;
    }
    the_device.remove("/proc/mtd");
    EXPECT_EQ(eeprom(), "65536d");
    the_device.remove("/tmp/EEPROM");
    EXPECT_EQ(eeprom(), "none");
    ASSERT_EQ(chdir("/"), 0);
}
