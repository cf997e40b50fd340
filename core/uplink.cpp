// SPDX-License-Identifier: MIT
#include <cstdio>
#include <cstring>
#include <libvexa.h>

// What the device's network scripts say about the way out.

namespace {

constexpr char path_uplink[] = "/var/run/system.uplink";
constexpr char path_uplink_ifname[] = "/var/run/system.uplink_ifname";
constexpr char path_uplink_port[] = "/var/run/system.uplink_port";

// A result is the position in the table, counted from 1.
constexpr const char *wireless_states[] = {"init", "wds", "eth", "down"};
constexpr const char *deviceless_states[] = {"init", "down", "unknown"};
constexpr const char *likely_devices[] = {"eth0", "bond0", "eth1"};

template <size_t N>
int position(const char *const (&table)[N], const char *text)
{
    for (size_t i = 0; i < N; i++)
        if (strcmp(table[i], text) == 0)
            return int(i) + 1;
    return 0;
}

void guess_device(char *buf, size_t size)
{
    for (const char *name : likely_devices) {
        if (iface_is_up(name)) {
            snprintf(buf, size, "%s", name);
            return;
        }
    }
}

} // namespace

extern "C" int get_wireless_uplink_state(void)
{
    char state[16];
    return position(wireless_states, freadline(path_uplink, state, sizeof state, ""));
}

extern "C" int get_uplink_device(char *buf, size_t size)
{
    char state[16];
    freadline(path_uplink, state, sizeof state, "");
    if (!*state) {
        guess_device(buf, size);
        return 0;
    }
    const int without = position(deviceless_states, state);
    if (without == 0 && size > 0 && !*freadline(path_uplink_ifname, buf, size, ""))
        freadline(path_uplink_port, buf, size, "");
    return without;
}
