// SPDX-License-Identifier: MIT
#include "sim/wireless.h"

#include "sim/driver/description.h"
#include "sim/driver/places.h"
#include "sim/error.h"

#include <ctime>
#include <fstream>
#include <sstream>

namespace sim {

namespace {

constexpr mode_t readable = 0644, of_root = 0600;

std::string now()
{
    timespec t{};
    clock_gettime(CLOCK_MONOTONIC, &t);
    return std::to_string(uint64_t(t.tv_sec) * 1000000000 + uint64_t(t.tv_nsec)) + '\n';
}

std::string content_of(const std::filesystem::path &file)
{
    std::ifstream in(file, std::ios::binary);
    if (!in)
        fail<error>("cannot read " + file.string());
    return {std::istreambuf_iterator<char>(in), {}};
}

// A line "include FILE" stands for another description beside this one. It comes last, so that the lines of this one
// keep their numbers.
std::string with_included(const std::filesystem::path &file)
{
    constexpr std::string_view include = "include ";
    std::istringstream lines(content_of(file));
    std::string own, included;
    for (std::string line; std::getline(lines, line);) {
        const bool includes = line.starts_with(include);
        own += (includes ? "# " : "") + line + '\n';
        if (includes)
            included += content_of(file.parent_path() / line.substr(include.size()));
    }
    return own + included;
}

driver::description read(const std::filesystem::path &file, const std::string &content)
{
    try {
        return driver::read_description(content);
    } catch (const error &wrong) {
        throw error(file.string() + ": " + wrong.what());
    }
}

// An interface, and the far end of its air, where a program can play a station.
std::string interface_commands(const driver::vap &v)
{
    const std::string air = "air-" + v.name;
    return "link add " + v.name + " address " + driver::text_of(v.bssid) + " type veth peer name " + air +
           "\nlink set " + air + " up\nlink set " + v.name + " up\n";
}

} // namespace

wireless read_wireless(const std::filesystem::path &file)
{
    if (!std::filesystem::exists(file))
        return {};
    const std::string content = with_included(file);
    wireless out{{{driver::places::description, content, readable, false},
                  {driver::places::entered, now(), readable, false},
                  {driver::places::tracker, "", of_root, false}},
                 ""};
    for (const driver::vap &v : read(file, content).vaps) {
        out.files.push_back({"/var/run/vapusage." + v.name, v.usage + '\n', readable, false});
        out.interfaces += interface_commands(v);
    }
    return out;
}

} // namespace sim
