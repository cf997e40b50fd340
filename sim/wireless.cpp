// SPDX-License-Identifier: MIT
#include "sim/wireless.h"

#include "sim/driver/description.h"
#include "sim/driver/places.h"
#include "sim/error.h"

#include <ctime>
#include <fstream>

namespace sim {

namespace {

constexpr mode_t readable = 0644, of_root = 0600;

std::string now()
{
    timespec t{};
    clock_gettime(CLOCK_MONOTONIC, &t);
    return std::to_string(uint64_t(t.tv_sec) * 1000000000 + uint64_t(t.tv_nsec)) + '\n';
}

std::string text_of(const driver::mac &address)
{
    char out[18];
    snprintf(out, sizeof out, "%02x:%02x:%02x:%02x:%02x:%02x", address[0], address[1], address[2], address[3],
             address[4], address[5]);
    return out;
}

driver::description read(const std::filesystem::path &file, const std::string &content)
{
    try {
        return driver::read_description(content);
    } catch (const error &wrong) {
        throw error(file.string() + ": " + wrong.what());
    }
}

} // namespace

wireless read_wireless(const std::filesystem::path &file)
{
    std::ifstream in(file, std::ios::binary);
    if (!in)
        return {};
    const std::string content{std::istreambuf_iterator<char>(in), {}};
    wireless out{{{driver::places::description, content, readable, false},
                  {driver::places::entered, now(), readable, false},
                  {driver::places::tracker, "", of_root, false}},
                 ""};
    for (const driver::vap &v : read(file, content).vaps) {
        out.files.push_back({"/var/run/vapusage." + v.name, v.usage + '\n', readable, false});
        const std::string air = "air-" + v.name; // the far end, where a program can play a station
        out.interfaces += "link add " + v.name + " address " + text_of(v.bssid) + " type veth peer name " + air +
                          "\nlink set " + air + " up\nlink set " + v.name + " up\n";
    }
    return out;
}

} // namespace sim
