// SPDX-License-Identifier: MIT
#include "core/hex.h"
#include "core/open_file.h"
#include "core/read_file.h"
#include "device/net_path.h"
#include "device/record_reader.h"

#include <libvexa.h>
#include <net/if.h>
#include <sys/stat.h>

namespace {

constexpr size_t record_size = 16; // address, port, local flag, age, and what is of no interest here
constexpr size_t port_at = 6;
constexpr size_t age_at = 8;
constexpr unsigned ticks_per_second = 100;
constexpr int state_forwarding = 3;

// Only "XX:XX:XX:XX:XX:XX" is the text of an address; anything else is that of none.
bool parse_address(const char *text, uint8_t (&address)[6])
{
    for (uint8_t &byte : address) {
        const int high = hex_value(text[0]);
        const int low = high < 0 ? -1 : hex_value(text[1]);
        const bool last = &byte == std::end(address) - 1;
        if (low < 0 || text[2] != (last ? '\0' : ':'))
            return false;
        byte = uint8_t(high << 4 | low);
        text += 3;
    }
    return true;
}

// The number that a file begins with, in one of scanf's formats.
template <typename T>
bool read_number(const unique_file &file, const char *format, T &value)
{
    char line[32];
    return file && read_line(file.get(), line, sizeof line) && sscanf(line, format, &value) == 1;
}

bool is_link(int dirfd, const char *name)
{
    struct stat info;
    return fstatat(dirfd, name, &info, AT_SYMLINK_NOFOLLOW) == 0 && S_ISLNK(info.st_mode);
}

} // namespace

extern "C" int get_mac_brinfo(const char *bridge, const char *mac, unsigned *age_seconds, unsigned *port)
{
    uint8_t wanted[6];
    if (!parse_address(mac, wanted))
        return 0;
    record_reader<record_size> records{open_descriptor(net_path{bridge, "brforward"})};
    while (const uint8_t *record = records.next()) {
        if (memcmp(record, wanted, sizeof wanted) != 0)
            continue;
        uint32_t age;
        memcpy(&age, record + age_at, sizeof age);
        *age_seconds = age / ticks_per_second;
        *port = record[port_at];
        return 1;
    }
    return 0;
}

extern "C" int get_br_port_state(const char *bridge, const char *ifname)
{
    int state;
    return read_number(open_reader(net_path{bridge, ifname, "state"}), "%d", state) ? state : -1;
}

extern "C" int is_brif_disabled(const char *bridge, const char *ifname)
{
    return get_br_port_state(bridge, ifname) < 1;
}

extern "C" int is_brif_forwarding(const char *bridge, const char *ifname)
{
    return get_br_port_state(bridge, ifname) == state_forwarding;
}

extern "C" int get_ifname_from_br_portno(const char *bridge, unsigned port_no, char *ifname)
{
    const unique_dir ports{opendir(net_path{bridge, "brif"})};
    while (const dirent *port = ports ? readdir(ports.get()) : nullptr) {
        unsigned number;
        if (is_link(dirfd(ports.get()), port->d_name) &&
            read_number(open_reader(net_path{bridge, port->d_name, "port_no"}), "0x%x", number) && number == port_no)
            return format_whole(ifname, IFNAMSIZ, "%s", port->d_name);
    }
    return 0;
}
