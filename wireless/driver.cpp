// SPDX-License-Identifier: MIT
#include "wireless/driver.h"

#include <algorithm>

namespace {

int private_request(int sock, const char *ifname, int request, uint16_t flags, void *data, uint16_t &length)
{
    auto block = named_request<wireless_request>(ifname);
    block.buffer = {data, length, flags};
    if (ioctl(sock, unsigned(request), &block) < 0)
        return -1;
    length = block.buffer.length;
    return 0;
}

} // namespace

extern "C" int set80211priv(int sock, const char *ifname, int request, int, uint16_t flags, void *data, uint16_t length)
{
    return private_request(sock, ifname, request, flags, data, length);
}

extern "C" int get80211priv(int sock, const char *ifname, int request, int, uint16_t flags, void *data, uint16_t length)
{
    return private_request(sock, ifname, request, flags, data, length) < 0 ? -1 : length;
}

int answer_buffer::ask(int sock, const char *ifname, driver_request request)
{
    return std::min(get80211priv(sock, ifname, request, 0, 0, data(), size()), int{size()});
}

int read_essid(int sock, const char *ifname, char *buf, uint16_t size)
{
    const int length = get80211priv(sock, ifname, ioctl_get_essid, 0, 0, buf, size);
    if (size > 0)
        buf[std::clamp(length, 0, size - 1)] = '\0';
    return length < 0 ? -1 : 0;
}
