// SPDX-License-Identifier: MIT
#include "core/ascii.h"
#include "core/ifreq.h"
#include "core/open_file.h"
#include "core/piece_reader.h"
#include "core/text.h"

#include <arpa/inet.h>
#include <cstddef>
#include <libvexa.h>
#include <linux/ethtool.h>
#include <linux/sockios.h>

static_assert(offsetof(dev_status, rx_bytes) == 80 && offsetof(dev_status, dhcpc) == 168 && sizeof(dev_status) == 192);

namespace {

constexpr char path_net_dev[] = "/proc/net/dev";
constexpr size_t line_size = 255;
constexpr uint32_t unknown_duplex = 255;

// The kernel's columns in their order; fifos, frames and the like are of no interest, nor what follows.
constexpr uint64_t dev_status::*columns[] = {
    &dev_status::rx_bytes,
    &dev_status::rx_packets,
    &dev_status::rx_errors,
    &dev_status::rx_dropped,
    nullptr,
    nullptr,
    nullptr,
    &dev_status::rx_multicast,
    &dev_status::tx_bytes,
    &dev_status::tx_packets,
    &dev_status::tx_errors,
    &dev_status::tx_dropped,
};

// Whether the line is that of the interface; then @numbers is what follows the name.
bool match_line(std::string_view line, std::string_view ifname, std::string_view &numbers)
{
    while (!line.empty() && is_space(line.front()))
        line.remove_prefix(1);
    const size_t colon = line.find(':');
    if (colon == line.npos || std::string_view{line.data(), colon} != ifname)
        return false;
    numbers = line;
    numbers.remove_prefix(colon + 1);
    return true;
}

void read_counters(std::string_view numbers, dev_status &st)
{
    char text[line_size];
    memcpy(text, numbers.data(), numbers.size());
    text[numbers.size()] = '\0';
    char *at = text;
    for (uint64_t dev_status::*counter : columns) {
        char *end;
        const uint64_t value = strtoull(at, &end, 0);
        if (end == at)
            return;
        if (counter)
            st.*counter = value;
        at = end;
    }
}

int read_statistics(const char *ifname, dev_status &st)
{
    unique_fd fd = open_descriptor(path_net_dev);
    if (!fd)
        return -1;
    piece_reader lines{std::move(fd), line_size};
    std::string_view line;
    for (int heading = 0; heading < 2; heading++)
        if (!lines.next(line))
            return -ENOENT;
    st.present = 0;
    std::string_view numbers;
    while (!st.present && lines.next(line)) {
        st.present = match_line(line, ifname, numbers);
        if (st.present)
            read_counters(numbers, st);
    }
    return 0;
}

uint32_t ask_address(interface_request<> &request, unsigned code, char (&text)[18])
{
    sockaddr_in address{};
    if (request.issue(code))
        memcpy(&address, &request.block.ifr_addr, sizeof address);
    (void)inet_ntop(AF_INET, &address.sin_addr, text, sizeof text);
    return address.sin_addr.s_addr;
}

void ask_link_settings(interface_request<> &request, uint32_t &speed, uint32_t &duplex)
{
    ethtool_cmd settings{};
    settings.cmd = ETHTOOL_GSET;
    request.block.ifr_data = reinterpret_cast<char *>(&settings);
    const bool told = request.issue(SIOCETHTOOL);
    speed = told ? ethtool_cmd_speed(&settings) : 0;
    duplex = told ? settings.duplex : unknown_duplex;
}

// An answer of 10 Mbit/s or half duplex gives way to a better second one.
void ask_link_settings_twice(interface_request<> &request, dev_status &st)
{
    ask_link_settings(request, st.speed, st.duplex);
    ask_link_settings(request, st.speed2, st.duplex2);
    if (st.speed == SPEED_10 && st.speed2 != SPEED_10)
        std::swap(st.speed, st.speed2);
    if (st.duplex == DUPLEX_HALF && st.duplex2 != DUPLEX_HALF) {
        st.duplex = st.duplex2;
        st.duplex2 = DUPLEX_HALF;
    }
}

} // namespace

extern "C" int fill_dev_status(const char *ifname, dev_status *st)
{
    if (!ifname)
        ifname = "";
    if (const int result = read_statistics(ifname, *st); result != 0)
        return result;
    interface_request request{ifname};
    if (!request.sock)
        return -ESRCH;
    if (request.issue(SIOCGIFHWADDR))
        memcpy(st->hwaddr, request.block.ifr_hwaddr.sa_data, sizeof st->hwaddr);
    st->ip = ask_address(request, SIOCGIFADDR, st->ip_str);
    st->netmask = ask_address(request, SIOCGIFNETMASK, st->netmask_str);
    if (request.issue(SIOCGIFFLAGS))
        st->flags = uint16_t(request.block.ifr_flags);
    ask_link_settings_twice(request, *st);
    copy_text(st->ifname, sizeof st->ifname, ifname);
    return 0;
}

extern "C" int get_ethtool_link_status(const char *ifname)
{
    interface_request request{ifname};
    ethtool_value link{};
    link.cmd = ETHTOOL_GLINK;
    request.block.ifr_data = reinterpret_cast<char *>(&link);
    return request.issue(SIOCETHTOOL) ? int(link.data) : -1;
}
