// SPDX-License-Identifier: MIT
#include "core/log.h"

#include <algorithm>
#include <bit>
#include <cstring>

namespace {

constexpr char log_tag[] = "libvexa_util";
constexpr unsigned ipv6_bits = 128;

} // namespace

extern "C" uint32_t ipv4_netmask_from_prefix_len(unsigned prefix)
{
    if (prefix > 32) {
        log_err("invalid subnet mask size of %u", prefix);
        return 0;
    }
    return UINT32_MAX << ((32 - prefix) % 32); // modulo: an empty prefix gives the mask of a host
}

extern "C" int ipv4_prefix_len_from_netmask(uint32_t mask)
{
    return std::popcount(mask);
}

extern "C" void ipv6_netmask_from_prefix_len(uint8_t mask[16], unsigned prefix)
{
    const unsigned bits = std::min(prefix, ipv6_bits);
    memset(mask, 0, 16);
    memset(mask, 0xff, bits / 8);
    if (bits % 8 != 0)
        mask[bits / 8] = uint8_t(0xff << (8 - bits % 8));
}

extern "C" int net_equals_v6(const uint8_t a[16], const uint8_t b[16], unsigned prefix)
{
    if (!a || !b) {
        log_err("NULL pointer passed");
        return 0;
    }
    uint8_t mask[16];
    ipv6_netmask_from_prefix_len(mask, prefix); // UINT_MAX, too, means all bits
    for (unsigned i = 0; i < 16; i++)
        if ((a[i] ^ b[i]) & mask[i])
            return 0;
    return 1;
}
