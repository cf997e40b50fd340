// SPDX-License-Identifier: MIT
#include "core/format.h"
#include "core/ifreq.h"
#include "device/net_path.h"
#include "wireless/usage.h"

#include <string_view>

namespace {

constexpr size_t usage_path_size = 26; // a longer name is cut, and then the usage is that of another file or none
constexpr size_t usage_size = 16;
constexpr int vaps_per_radio = 16;

constexpr struct {
    const char *prefix;
    const char *uplink;
} families[] = {{"ra", "apcli0"}, {"rai", "apclii0"}};

vap_entry entry_for(uint32_t family, const char *ifname)
{
    vap_entry entry{1, family, vexa_get_ifindex(ifname), "", ""};
    (void)format_whole(entry.ifname, sizeof entry.ifname, "%s", ifname);
    (void)format_whole(entry.parent, sizeof entry.parent, "%s0", families[family].prefix);
    return entry;
}

bool has_usage(const char *ifname)
{
    char path[sizeof usage_path_format + IFNAMSIZ];
    return format_whole(path, sizeof path, usage_path_format, ifname) && access(path, F_OK) == 0;
}

} // namespace

extern "C" int vexa_if_is_up(const char *ifname)
{
    if (access(net_path{ifname, ""}, F_OK) != 0)
        return 0;
    interface_request request{ifname};
    return request.issue(SIOCGIFFLAGS) && (request.block.ifr_flags & IFF_UP) != 0;
}

// Three digits are read: callers expect a larger index cut.
extern "C" int vexa_get_ifindex(const char *ifname)
{
    char text[4];
    return atoi(freadline(net_path{ifname, "ifindex"}, text, sizeof text, "")); // NOLINT(cert-err34-c)
}

extern "C" int is_wireless_uplink_or_downlink_vap(const char *vap)
{
    char path[usage_path_size];
    (void)snprintf(path, sizeof path, usage_path_format, vap);
    char text[usage_size];
    const std::string_view usage = freadline(path, text, sizeof text, "user");
    return usage == "uplink" || usage == "downlink";
}

// The capacity bounds what is cleared and not what is found: callers have room for all.
extern "C" int enum_vaps(vap_entry *entries, size_t capacity)
{
    if (!entries || capacity == 0)
        return 0;
    memset(entries, 0, capacity * sizeof *entries);
    int count = 0;
    for (uint32_t family = 0; family < std::size(families); family++) {
        const auto &[prefix, uplink] = families[family];
        if (has_usage(uplink) && vexa_if_is_up(uplink))
            entries[count++] = entry_for(family, uplink);
        for (int i = 0; i < vaps_per_radio; i++) {
            char ifname[IFNAMSIZ];
            (void)format_whole(ifname, sizeof ifname, "%s%d", prefix, i);
            if (vexa_if_is_up(ifname))
                entries[count++] = entry_for(family, ifname);
        }
    }
    return count;
}
