// SPDX-License-Identifier: MIT
#include "core/ifreq.h"
#include "core/rtnetlink.h"

#include <arpa/inet.h>
#include <libvexa.h>
#include <linux/neighbour.h>

namespace {

// The steps of fdb_delneigh(), by the numbers that its complaints are known by.
enum delneigh_step { step_socket = 140, step_index = 145, step_netlink = 149, step_send = 165 };

int complain(int error, delneigh_step step)
{
    fprintf(stderr, "fdb_delneigh: %d on line %d\n", error, step);
    return error;
}

} // namespace

extern "C" int fdb_delneigh(const uint8_t mac[6], const char *ifname)
{
    interface_request interface {
        ifname
    };
    if (!interface.sock)
        return complain(-errno, step_socket);
    if (!interface.issue(SIOCGIFINDEX))
        return complain(-errno, step_index);
    ndmsg neighbour{};
    neighbour.ndm_family = AF_BRIDGE;
    neighbour.ndm_ifindex = interface.block.ifr_ifindex;
    uint8_t address[6];
    memcpy(address, mac, sizeof address);
    const unique_fd netlink = open_rtnetlink();
    if (!netlink)
        return complain(-errno, step_netlink);
    const int result = rtnetlink_request{RTM_DELNEIGH, 0, neighbour, NDA_LLADDR, address}.send(netlink.get());
    return result == 0 ? 0 : complain(result, step_send);
}

extern "C" int add_ip_neigh_entry(const char *ifname, const char *ip)
{
    uint8_t address[sizeof(in_addr)];
    interface_request interface {
        ifname
    };
    if (inet_pton(AF_INET, ip, address) != 1 || !interface.issue(SIOCGIFINDEX))
        return -1;
    ndmsg neighbour{};
    neighbour.ndm_family = AF_INET;
    neighbour.ndm_ifindex = interface.block.ifr_ifindex;
    neighbour.ndm_flags = NTF_USE; // without a hardware address: the kernel is to find it out
    const rtnetlink_request request{RTM_NEWNEIGH, NLM_F_CREATE | NLM_F_REPLACE, neighbour, NDA_DST, address};
    const unique_fd netlink = open_rtnetlink();
    return netlink && request.send(netlink.get()) == 0 ? 0 : -1;
}
