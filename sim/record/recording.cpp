// SPDX-License-Identifier: MIT
#include "sim/record/recording.h"

#include "sim/error.h"
#include "sim/record/disguise.h"

#include <fstream>
#include <libvexa.h>

namespace sim {

namespace fs = std::filesystem;

void write_file(const fs::path &file, const std::string &content)
{
    std::error_code refused;
    fs::create_directories(file.parent_path(), refused);
    if (refused)
        throw error("cannot make the folder " + file.parent_path().string() + ": " + refused.message());
    std::ofstream out(file, std::ios::binary);
    if (!(out << content).flush())
        fail<error>("cannot write " + file.string());
}

void record_device(const fs::path &folder)
{
    if (fs::exists(folder))
        throw error(folder.string() + " is there already");
    disguise names;
    const board *model = board_identify();
    write_file(folder / "about", std::string{"a recorded "} + (model ? map_board_name(model) : "device") + '\n');
    record_files(names, folder / "root");
    record_factory_data(names, folder / "eeprom");
    record_interfaces(names, folder / "interfaces");
    record_radios(names, folder / "wireless");
    record_bus(names, folder / "bus");
}

} // namespace sim
