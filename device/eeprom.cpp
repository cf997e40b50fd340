// SPDX-License-Identifier: MIT
#include "core/format.h"
#include "core/open_file.h"

#include <libvexa.h>
#include <strings.h>

namespace {

constexpr char path_mtd[] = "/proc/mtd";
constexpr size_t line_size = 4096;
constexpr size_t eeprom_size = 65536;

unique_fd open_partition(unsigned number)
{
    char path[32];
    for (const char *directory : {"/dev/mtd", "/dev/mtd/"}) {
        (void)format_whole(path, sizeof path, "%s%u", directory, number);
        if (unique_fd fd = open_descriptor(path))
            return fd;
    }
    return unique_fd{};
}

unique_fd open_eeprom()
{
    char line[line_size];
    char name[line_size];
    unsigned number;
    const unique_file partitions = open_reader(path_mtd);
    while (partitions && fgets(line, sizeof line, partitions.get()))
        if (sscanf(line, "mtd%u: %*s %*s \"%[^\"]", &number, name) == 2 && strcasecmp(name, "EEPROM") == 0)
            return open_partition(number);
    return open_descriptor("EEPROM");
}

} // namespace

extern "C" buffer *vexa_read_eeprom(void)
{
    const unique_fd fd = open_eeprom();
    unique_buffer contents{fd ? buffer_create2(eeprom_size) : nullptr};
    void *room = contents ? contents->alloc_zeroed(contents.get(), eeprom_size) : nullptr;
    if (!room || read(fd.get(), room, eeprom_size) != ssize_t{eeprom_size})
        return nullptr;
    return contents.release();
}
