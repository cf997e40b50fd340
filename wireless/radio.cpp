// SPDX-License-Identifier: MIT
#include "core/log.h"
#include "wireless/driver.h"
#include "wireless/wire.h"

#include <algorithm>

namespace {

constexpr char log_tag[] = "libvexa";
constexpr size_t radio_answer_size = 72;

#define FIELD(record, name, offset) WIRE_FIELD(record, name, offset, sizeof(record::name))

constexpr wire_field info_fields[] = {
    FIELD(wireless_info, channel, 0), // a word, of which hosts take one byte
    FIELD(wireless_info, width, 2),   FIELD(wireless_info, frequency, 4),
    FIELD(wireless_info, chains, 8),  FIELD(wireless_info, max_rate, 12),
};
static_assert(fits(info_fields, radio_answer_size));

constexpr wire_field counter_fields[] = {
    FIELD(athstat, busy, 16),         FIELD(athstat, busy_rx, 20),    FIELD(athstat, busy_tx, 24),
    FIELD(athstat, interference, 28), FIELD(athstat, rx_packets, 32), FIELD(athstat, tx_packets, 36),
    FIELD(athstat, rx_bytes, 40),     FIELD(athstat, tx_bytes, 44),   FIELD(athstat, rx_errors, 48),
    FIELD(athstat, tx_errors, 52),    FIELD(athstat, tx_retries, 56), FIELD(athstat, tx_dropped, 60),
    FIELD(athstat, beacons, 64),      FIELD(athstat, noise, 68),
};
static_assert(fits(counter_fields, radio_answer_size));

void fill_mode(wireless_info &info, int32_t driver_mode)
{
    if (driver_mode == 2)
        info.mode = 1;
    else if (driver_mode == 3)
        info.mode = 2;
}

} // namespace

extern "C" void fill_dfswait(int sock, const char *vap, uint8_t *dfswait)
{
    uint8_t answer[4] = {};
    const uint32_t word = ask_driver(sock, vap, ioctl_dfswait, answer) ? load_le32(answer) : 0;
    *dfswait = word != 0 && uint8_t(word) == 0 ? 1 : uint8_t(word);
}

extern "C" int fill_wireless_info(const char *vap, wireless_info *info)
{
    const unique_fd sock = request_socket();
    if (!sock)
        return 0;
    if (read_essid(sock.get(), vap, info->essid, sizeof info->essid) < 0)
        log_debug("unable to get essid: %s", strerror(errno));
    const auto asked = [&](driver_request code, wireless_request &request) {
        request = named_request<wireless_request>(vap);
        return ioctl(sock.get(), unsigned(code), &request) >= 0;
    };
    wireless_request request;
    if (asked(ioctl_get_mode, request))
        fill_mode(*info, request.value);
    if (asked(ioctl_get_access_point, request))
        memcpy(info->bssid, request.address.octets, sizeof info->bssid);
    if (asked(ioctl_get_tx_power, request))
        info->txpower = uint32_t(request.value);
    uint8_t answer[radio_answer_size] = {};
    if (ask_driver(sock.get(), vap, ioctl_radiostat, answer))
        copy_fields<info_fields>(*info, answer);
    fill_dfswait(sock.get(), vap, &info->dfswait);
    info->ieee_mode = info->dfswait ? 6 : 5;
    return 0;
}

extern "C" void get_athstat(const char *ifname, athstat *out)
{
    uint8_t answer[radio_answer_size] = {};
    if (ask_driver(request_socket().get(), ifname, ioctl_radiostat, answer))
        copy_fields<counter_fields>(*out, answer);
}

extern "C" uint32_t get_antenna_gain(const char *ifname)
{
    uint8_t answer[4] = {};
    return ask_driver(request_socket().get(), ifname, ioctl_antgain, answer) ? load_le32(answer) : 0;
}
