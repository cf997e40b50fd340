// SPDX-License-Identifier: MIT
#include "sim/settings.h"

#include "sim/driver/lines.h"
#include "sim/driver/places.h"
#include "sim/error.h"

#include <filesystem>
#include <fstream>

namespace sim {

std::string line_of_setting(const std::string &setting)
{
    const size_t equals = setting.find('=');
    const size_t kind = setting.find('.');
    const size_t key = setting.rfind('.', equals);
    if (equals == setting.npos || kind >= key || key > equals || setting.find('\n') != setting.npos)
        throw std::invalid_argument("'" + setting + "' is no setting such as station.02:57:00:00:00:02.rssi=-84");
    return setting.substr(0, kind) + " " + setting.substr(kind + 1, key - kind - 1) + " " +
           setting.substr(key + 1, equals - key) + driver::quoted(setting.substr(equals + 1));
}

std::string line_of_failure(const std::string &failure)
{
    const size_t equals = failure.find('=');
    if (equals == 0 || equals == failure.npos || failure.find('\n') != failure.npos)
        throw std::invalid_argument("'" + failure + "' is no failure such as GETMACS=E2BIG");
    return "fail " + failure.substr(0, equals) + " " + failure.substr(equals + 1);
}

void describe(const std::string &line)
{
    if (!std::filesystem::exists(driver::places::description))
        throw error("there are no simulated radios here");
    std::ofstream out{driver::places::description, std::ios::app};
    if (!(out << line << '\n').flush())
        fail<error>(std::string{"cannot write "} + driver::places::description);
}

} // namespace sim
