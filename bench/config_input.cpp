// SPDX-License-Identifier: MIT
#include "bench/config_input.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <random>
#include <sys/mman.h>
#include <unistd.h>

namespace {

constexpr size_t bytes_per_line = 28;

struct family {
    const char *name;
    std::vector<const char *> fields;
};

const std::vector<family> families = {
    {"radio.",
     {"mode", "phyname", "channel", "ieee_mode", "txpower", "countrycode", "rate.auto", "ackdistance", "cwm",
      "status"}},
    {"wireless.",
     {"ssid", "devname", "security.type", "hide_ssid", "mac_acl.status", "usage", "is_guest", "vlan", "dtim", "wds",
      "status", "comment"}},
    {"aaa.", {"ssid", "wpa.psk", "wpa.key.1.mgmt", "radius.ip", "br.devname", "pmf.mode", "status"}},
    {"netconf.", {"devname", "ip", "netmask", "autoip.status", "promisc", "up", "status"}},
    {"vlan.", {"devname", "id", "status"}},
    {"bridge.1.port.", {"devname", "prio", "hairpin"}},
    {"qos.rule.", {"rate.up", "rate.down", "iface"}},
};

size_t lines_of_one_index()
{
    size_t sum = 0;
    for (const family &f : families)
        sum += f.fields.size();
    return sum;
}

} // namespace

std::vector<config_line> make_lines(size_t count)
{
    const size_t indexes = count / lines_of_one_index() + 1;
    std::vector<config_line> lines;
    size_t bytes = 0;
    for (const family &f : families)
        for (size_t index = 1; index <= indexes; index++)
            for (const char *field : f.fields) {
                config_line line;
                const int key = snprintf(line.key, sizeof line.key, "%s%zu.%s", f.name, index, field);
                // the value fills up to the average, as far as the lines before left room
                const long room = long(bytes_per_line * (lines.size() + 1) - bytes) - key - 2;
                const int value = snprintf(line.value, sizeof line.value, "%.*s", int(std::clamp(room, 1L, 18L)),
                                           "enabled.192.168.1.1");
                bytes += size_t(key + value + 2);
                lines.push_back(line);
            }
    lines.resize(std::min(lines.size(), count));
    return lines;
}

std::vector<config_line> make_overrides(const std::vector<config_line> &lines)
{
    std::vector<config_line> overrides;
    for (size_t i = 0; i < lines.size(); i += 10)
        memcpy(overrides.emplace_back(lines[i]).value, "over", sizeof "over");
    return overrides;
}

std::vector<config_line> change_some(std::vector<config_line> lines)
{
    for (size_t i = 7; i < lines.size(); i += 20)
        lines[i].value[0] = 'X';
    return lines;
}

std::vector<config_line> scatter(std::vector<config_line> lines)
{
    std::shuffle(lines.begin(), lines.end(), std::mt19937{4711});
    return lines;
}

std::string text_of(const std::vector<config_line> &lines)
{
    std::string text;
    for (const config_line &line : lines)
        text.append(line.key).append("=").append(line.value).append("\n");
    return text;
}

input_file::input_file(const std::string &text) : fd_{memfd_create("config", MFD_CLOEXEC)}
{
    if (fd_ < 0 || write(fd_, text.data(), text.size()) != ssize_t(text.size())) {
        perror("input file");
        exit(1);
    }
    path_ = "/proc/self/fd/" + std::to_string(fd_);
}

input_file::~input_file()
{
    close(fd_);
}
