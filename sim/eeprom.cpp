// SPDX-License-Identifier: MIT
#include "sim/eeprom.h"

#include "sim/error.h"

#include <fstream>
#include <sstream>

namespace sim {

namespace {

constexpr char partition[] = "/dev/mtd2"; // the devices' /proc/mtd says so
constexpr mode_t partition_mode = 0600;
constexpr size_t image_size = 65536;

std::string bytes_of(std::istream &rest)
{
    std::string bytes;
    if ((rest >> std::ws).peek() == '"') {
        std::getline(rest.ignore(), bytes, '"');
        return bytes;
    }
    for (unsigned byte = 0; rest >> byte;)
        bytes += char(byte);
    return bytes;
}

} // namespace

device_file read_factory_data(const std::filesystem::path &description)
{
    device_file file{partition, std::string(image_size, '\xff'), partition_mode, false};
    std::ifstream lines(description);
    for (std::string line; std::getline(lines, line);) {
        if (line.starts_with('#'))
            continue;
        std::istringstream words(line);
        size_t at = 0;
        words >> std::hex >> at;
        const std::string bytes = bytes_of(words);
        if (bytes.empty() || at > image_size - bytes.size())
            throw error("cannot tell what this line of " + description.string() + " means: " + line);
        file.content.replace(at, bytes.size(), bytes);
    }
    return file;
}

} // namespace sim
