// SPDX-License-Identifier: MIT
#include "core/log.h"
#include "core/open_file.h"
#include "core/rtnetlink.h"
#include "core/text.h"

#include <arpa/inet.h>
#include <net/if.h>

namespace {

constexpr char log_tag[] = "libvexa_status";
constexpr char path_arp[] = "/proc/net/arp";
constexpr char uplink[] = "br0";
constexpr size_t mac_text_size = 18;

// Addresses in network byte order; 0 for what the route does not name.
struct route {
    uint32_t table, destination, gateway, ifindex;
};

bool read_route(const rtnetlink_message &message, route &r)
{
    rtmsg head;
    std::span<const uint8_t> attributes;
    if (!message.split(head, attributes))
        return false;
    r = {.table = head.rtm_table, .destination = 0, .gateway = 0, .ifindex = 0};
    return head.rtm_family != AF_INET ||
           read_numbers(
               attributes,
               {{RTA_TABLE, &r.table}, {RTA_DST, &r.destination}, {RTA_GATEWAY, &r.gateway}, {RTA_OIF, &r.ifindex}});
}

// The gateway of the first default route out of an interface, 0 without one; a negated errno on failure.
int find_gateway(unsigned ifindex, uint32_t &gateway)
{
    gateway = 0;
    rtnetlink_answer answer{dump_request(RTM_GETROUTE, AF_INET)};
    rtnetlink_message message;
    while (answer.next(message)) {
        route r;
        if (message.type != RTM_NEWROUTE)
            continue;
        if (!read_route(message, r))
            return -EBADMSG;
        if (gateway == 0 && r.table == RT_TABLE_MAIN && r.destination == 0 && r.ifindex == ifindex)
            gateway = r.gateway;
    }
    return answer.error();
}

struct neighbour {
    char ip[100], mac[100];
    unsigned flags;
};

bool read_neighbour(const char *line, neighbour &n)
{
    unsigned type;
    char mask[100], device[100];
    return sscanf(line, "%99s 0x%x 0x%x %99s %99s %99s", n.ip, &type, &n.flags, n.mac, mask, device) >= 4;
}

} // namespace

extern "C" int get_mac_by_ip(const char *ip, char *mac, size_t size)
{
    if (size < mac_text_size)
        log_err("mac truncated");
    char line[256];
    neighbour n;
    const unique_file table = open_reader(path_arp);
    if (!table || !fgets(line, sizeof line, table.get()))
        return 0;
    while (fgets(line, sizeof line, table.get()) && read_neighbour(line, n)) {
        if (n.flags == 0 || (ip && strcmp(ip, n.ip) != 0))
            continue;
        copy_text(mac, size, n.mac);
        return 1;
    }
    return 0;
}

extern "C" int get_gateway(char *ip_text, void *ip_bin, unsigned len)
{
    uint32_t gateway;
    if (find_gateway(if_nametoindex(uplink), gateway) != 0)
        return -1;
    if (gateway == 0)
        return 0;
    if (ip_text && !inet_ntop(AF_INET, &gateway, ip_text, len)) // a cut address would be another one
        copy_text(ip_text, len, "");
    if (ip_bin)
        memcpy(ip_bin, &gateway, sizeof gateway);
    return 1;
}

extern "C" int get_gateway_mac(char *mac, size_t size)
{
    char ip[INET_ADDRSTRLEN];
    return get_gateway(ip, nullptr, sizeof ip) == 1 && get_mac_by_ip(ip, mac, size);
}

extern "C" const char *get_default_gw_interface(void)
{
    static char ifname[17];
    const int length = popen_get_output("ip route | grep default | awk '{print $5}'", ifname, sizeof ifname);
    if (length < 0)
        log_err("get_default_gateway_interface: get default gateway failed");
    ifname[length > 0 ? length - 1 : 0] = '\0'; // in the place of the line feed
    if (ifname[0] == '\0')
        copy_text(ifname, sizeof ifname, uplink);
    return ifname;
}
