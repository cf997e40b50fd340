// SPDX-License-Identifier: MIT
#include "sim/driver/bytes.h"

#include "sim/error.h"

#include <algorithm>
#include <arpa/inet.h>
#include <cstdio>

namespace sim::driver {

bytes bytes_of_hex(std::string_view digits)
{
    constexpr std::string_view values = "0123456789abcdef";
    bytes out;
    bool second = false;
    for (const char digit : digits) {
        if (digit == '.' || digit == ':')
            continue;
        const size_t value = values.find(char(digit | 0x20));
        if (value == values.npos)
            throw error("no bytes in hexadecimal: " + std::string(digits));
        if (second)
            out.back() = uint8_t(size_t{out.back()} << 4 | value);
        else
            out.push_back(uint8_t(value));
        second = !second;
    }
    if (second)
        throw error("half a byte at the end of " + std::string(digits));
    return out;
}

mac mac_of(std::string_view text)
{
    mac address{};
    const bytes read = bytes_of_hex(text);
    if (read.size() != address.size())
        throw error("no hardware address: " + std::string(text));
    std::copy(read.begin(), read.end(), address.begin());
    return address;
}

uint32_t ipv4_of(std::string_view text)
{
    in_addr address{};
    if (inet_pton(AF_INET, std::string(text).c_str(), &address) != 1)
        throw error("no IPv4 address: " + std::string(text));
    return ntohl(address.s_addr);
}

std::string text_of(const mac &a)
{
    char out[18];
    snprintf(out, sizeof out, "%02x:%02x:%02x:%02x:%02x:%02x", a[0], a[1], a[2], a[3], a[4], a[5]);
    return out;
}

std::string text_of_ipv4(uint32_t number)
{
    char out[INET_ADDRSTRLEN];
    const in_addr address{htonl(number)};
    return inet_ntop(AF_INET, &address, out, sizeof out);
}

} // namespace sim::driver
