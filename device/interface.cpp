// SPDX-License-Identifier: MIT
#include "core/ascii.h"
#include "core/rtnetlink.h"
#include "core/text.h"

#include <arpa/inet.h>
#include <libvexa.h>
#include <net/if.h>

namespace {

constexpr unsigned address_bits = 32;
constexpr size_t most_characters = 16; // of a name that is rewritten

// All ones without a shift by the whole width.
uint32_t mask_of(unsigned prefix)
{
    return prefix == 0 || prefix > address_bits ? 0 : UINT32_MAX << (address_bits - prefix);
}

bool has_address(int ifindex, uint32_t &ip, uint32_t &mask)
{
    return interface_get_ipaddress(ifindex, &ip, &mask) == 0;
}

} // namespace

extern "C" int interface_is_up(int ifindex)
{
    bool up = false;
    rtnetlink_answer answer{dump_request(RTM_GETLINK, AF_UNSPEC)};
    rtnetlink_message message;
    while (answer.next(message)) {
        ifinfomsg link;
        std::span<const uint8_t> attributes;
        if (message.type != RTM_NEWLINK)
            continue;
        if (!message.split(link, attributes))
            return -1;
        if (link.ifi_index == ifindex)
            up = link.ifi_flags & IFF_UP;
    }
    return answer.error() == 0 && up ? 0 : -1;
}

extern "C" int interface_get_ipaddress(int ifindex, uint32_t *ip, uint32_t *mask)
{
    bool found = false;
    uint32_t local = 0;
    unsigned prefix = 0;
    rtnetlink_answer answer{dump_request(RTM_GETADDR, AF_INET)};
    rtnetlink_message message;
    while (answer.next(message)) {
        ifaddrmsg address;
        std::span<const uint8_t> attributes;
        if (message.type != RTM_NEWADDR)
            continue;
        if (!message.split(address, attributes))
            return -1;
        if (found || address.ifa_family != AF_INET || address.ifa_index != unsigned(ifindex))
            continue;
        if (!read_numbers(attributes, {{IFA_LOCAL, &local}}))
            return -1;
        found = true;
        prefix = address.ifa_prefixlen;
    }
    if (!found || answer.error() != 0)
        return -1;
    *ip = ntohl(local);
    *mask = mask_of(prefix);
    return 0;
}

extern "C" int ip_belongs_to_subnet(uint32_t ip, uint32_t net, uint32_t mask)
{
    return ((ip ^ net) & mask) == 0;
}

extern "C" int wan_discover_possible(int ifindex_a, int ifindex_b, uint32_t ip)
{
    uint32_t ip_a, ip_b, mask_a, mask_b;
    if (interface_is_up(ifindex_a) != 0 || interface_is_up(ifindex_b) != 0)
        return -ENETDOWN;
    if (!has_address(ifindex_a, ip_a, mask_a) || !has_address(ifindex_b, ip_b, mask_b))
        return -ENODEV;
    const bool taken = ip_belongs_to_subnet(ip, ip_a, mask_a) || ip_belongs_to_subnet(ip_b, ip_a, mask_a);
    return taken ? -EADDRNOTAVAIL : 0;
}

extern "C" void replace_ifname(char *ifname, const char *prefix)
{
    const size_t length = strnlen(ifname, most_characters + 1);
    const size_t head = strcspn(ifname, "0123456789");
    if (length > most_characters || head == 0 || head == length)
        return;
    if (head == strlen(prefix) && memcmp(ifname, prefix, head) == 0)
        return;
    char renamed[IFNAMSIZ];
    const int written = snprintf(renamed, sizeof renamed, "eth%llu", strtoull(ifname + head, nullptr, 10));
    if (written < int{sizeof renamed})
        copy_text(ifname, IFNAMSIZ, renamed);
}
