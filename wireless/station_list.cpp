// SPDX-License-Identifier: MIT
#include "core/list.h"
#include "core/log.h"
#include "wireless/station.h"

#include <algorithm>

namespace {

constexpr char log_tag[] = "wireless";
constexpr size_t macs_size = 16384;
constexpr size_t mac_size = sizeof stainfo::mac;

// The addresses as the driver lists them, for get_stalist(): the number of bytes, or -1.
int macs_of_driver(int sock, const char *vap, answer_buffer &macs)
{
    while (macs) {
        const int length = macs.ask(sock, vap, ioctl_getmacs);
        if (length >= 0)
            return length;
        if (errno != E2BIG || !macs.grow())
            return -1;
    }
    log_err_as("get_stalist", "IEEE80211_IOCTL_GETMACS oom");
    return -1;
}

// The same from the tracking device.
int macs_of_tracker(const char *vap, const answer_buffer &macs)
{
    const int ifindex = int(if_nametoindex(vap));
    if (ifindex < 0) {
        log_err_as("get_stalist", "bad iface: %s", vap);
        return -1;
    }
    const int length = vexa_sta_ht_get_stas(uint32_t(ifindex), macs.data(), macs.size());
    if (length < 0)
        log_err_as("get_stalist", "too many stas: %s", vap);
    return length;
}

// A station that the driver does not know. Daemons count on each that the tracker has, so that without memory there is
// no way on: the process ends at once, where a core dump shows it.
unique_malloc<stainfo> placeholder(const uint8_t *mac)
{
    unique_malloc<stainfo> station{static_cast<stainfo *>(calloc(1, sizeof(stainfo)))};
    if (!station) {
        log_err_as("get_stalist", "%s: couldn't allocate memory for sta info!", "get_stalist");
        volatile int *nowhere = nullptr;
        *nowhere = 0; // NOLINT(clang-analyzer-core.NullDereference)
    }
    memcpy(station->mac, mac, mac_size);
    return station;
}

} // namespace

extern "C" vexa_list *get_stalist(const char *vap)
{
    answer_buffer macs{macs_size};
    if (!macs)
        return nullptr;
    const unique_fd sock = request_socket();
    const bool ask_driver = is_wireless_uplink_or_downlink_vap(vap);
    const int length = ask_driver ? macs_of_driver(sock.get(), vap, macs) : macs_of_tracker(vap, macs);
    if (length < 0)
        return nullptr;
    auto *head = static_cast<vexa_list *>(malloc(sizeof(vexa_list)));
    if (!head) {
        log_err("get_stalist oom");
        return nullptr;
    }
    list_init(head);
    answer_buffer answer;
    for (size_t at = 0; at + mac_size <= size_t(length); at += mac_size) {
        unique_malloc<stainfo> station = query_station(sock.get(), vap, macs.data() + at, answer);
        if (!station && !ask_driver)
            station = placeholder(macs.data() + at);
        if (station)
            list_add_tail(head, &station.release()->links);
    }
    return head;
}

extern "C" void free_stalist(vexa_list *stations)
{
    free_scanlist(stations);
}
