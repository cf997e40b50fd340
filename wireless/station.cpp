// SPDX-License-Identifier: MIT
#include "wireless/station.h"

#include "core/log.h"
#include "wireless/station_record.h"
#include "wireless/wire.h"

namespace {

constexpr char log_tag[] = "libvexa";
constexpr size_t first_size = 2648;
static_assert(first_size >= station_answer_size);

constexpr size_t mac_size = sizeof stainfo::mac;

bool get_ieee80211req_sta_info(int sock, const char *vap, const uint8_t *mac, answer_buffer &answer)
{
    if (sock < 0) {
        log_err("unable to open sock");
        return false;
    }
    answer.start(first_size);
    while (answer) {
        memcpy(answer.data() + station_mac_at, mac, mac_size);
        if (answer.ask(sock, vap, ioctl_sta_info2) >= 0)
            return true;
        if (errno != E2BIG || !answer.grow()) {
            log_debug("IOCTL_STA_INFO2 failed: %s", strerror(errno));
            return false;
        }
        log_debug("len not enough, enlarge %d", answer.size());
    }
    log_err("unable to alloc memory for IOCTL_STA_INFO2");
    return false;
}

} // namespace

unique_malloc<stainfo> query_station(int sock, const char *vap, const uint8_t *mac, answer_buffer &answer)
{
    if (!get_ieee80211req_sta_info(sock, vap, mac, answer))
        return nullptr;
    unique_malloc<stainfo> station{static_cast<stainfo *>(calloc(1, sizeof(stainfo)))};
    if (!station)
        return nullptr;
    station->valid = 1;
    fill_station(*station, answer.data());
    uint8_t counters[node_answer_size] = {};
    memcpy(counters, mac, mac_size);
    if (ask_driver(sock, vap, ioctl_nodestat, counters))
        fill_node_counters(*station, counters);
    else
        log_debug_as("get_stainfo", "ioctl failed to get nodestat");
    return station;
}

extern "C" stainfo *get_stainfo(const char *vap, const uint8_t *mac)
{
    answer_buffer answer;
    return query_station(request_socket().get(), vap, mac, answer).release();
}

extern "C" uint16_t get_sta_associd(const char *vap, const uint8_t *mac)
{
    const unique_fd sock = request_socket();
    answer_buffer answer;
    return get_ieee80211req_sta_info(sock.get(), vap, mac, answer) ? load_le16(answer.data() + station_associd_at)
                                                                   : uint16_t{0};
}
