// SPDX-License-Identifier: MIT
#include "core/ifreq.h"

#include <libvexa.h>

extern "C" int devhwaddr_get_iface(uint8_t mac[6], const char *ifname)
{
    interface_request request{ifname};
    if (!request.sock)
        return -1;
    if (!request.issue(SIOCGIFHWADDR))
        return -ECHILD;
    memcpy(mac, request.block.ifr_hwaddr.sa_data, 6);
    return 0;
}

extern "C" int devhwaddr_get(uint8_t mac[6])
{
    for (const char *ifname : {"eth0", "eth0_real", "br0"})
        if (devhwaddr_get_iface(mac, ifname) == 0)
            return 0;
    return 1;
}

extern "C" int devhwaddr_generate(uint8_t mac[6], uint8_t last)
{
    const uint8_t address[6] = {VEXA_OUI >> 16, VEXA_OUI >> 8 & 0xff, VEXA_OUI & 0xff, 0xde, 0xad, last};
    memcpy(mac, address, sizeof address);
    return 0;
}
