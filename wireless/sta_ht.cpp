// SPDX-License-Identifier: MIT
#include "core/log.h"
#include "core/owner.h"
#include "core/text.h"

#include <algorithm>
#include <fcntl.h>
#include <sys/ioctl.h>

namespace {

constexpr char log_tag[] = "vexa_sta_ht_user";

// The tracking device's requests. Its pointers have 64 bits on every machine.
using pointer64 = uint64_t;

struct stations_request {
    static constexpr unsigned code = 0x80185502;
    uint32_t ifindex;
    uint32_t padding;
    pointer64 buffer;
    uint64_t length;
};
static_assert(sizeof(stations_request) == 24);

struct statistics_request {
    static constexpr unsigned code = 0xc0185501;
    pointer64 mac;
    uint32_t selector;
    uint32_t padding;
    pointer64 output;
};
static_assert(sizeof(statistics_request) == 24);

struct keyid_request {
    static constexpr unsigned code = 0x40305503;
    pointer64 mac;
    uint32_t value;
    char keyid[32];
    uint32_t padding;
};
static_assert(sizeof(keyid_request) == 48);

struct probe_frame_request {
    static constexpr unsigned code = 0x80185504;
    pointer64 mac;
    uint32_t selector;
    uint32_t length;
    pointer64 buffer;
};
static_assert(sizeof(probe_frame_request) == 24);

pointer64 address_of(const void *p)
{
    return reinterpret_cast<uintptr_t>(p);
}

unique_fd open_device(const char *func)
{
    unique_fd device{open("/dev/vexa_sta_ht", O_RDWR | O_CLOEXEC)};
    if (!device)
        log_err_as(func, "cannot open the device errno:%d", errno);
    return device;
}

template <typename Request>
int issue(const unique_fd &device, Request &request)
{
    return ioctl(device.get(), Request::code, &request);
}

#define MAC_FORMAT "[%02X:%02X:%02X:%02X:%02X:%02X]"
#define MAC_OCTETS(mac) (mac)[0], (mac)[1], (mac)[2], (mac)[3], (mac)[4], (mac)[5]

} // namespace

extern "C" int vexa_sta_ht_get_stas(uint32_t ifindex, void *macs, uint64_t length)
{
    const unique_fd device = open_device(__func__);
    if (!device)
        return -1;
    stations_request request{ifindex, 0, address_of(macs), length};
    const int result = issue(device, request);
    if (result < 0)
        log_err("ioctl failed: ifindex: %d errno:%d", int(ifindex), errno);
    return result < 0 ? result : int(std::min<uint64_t>(uint64_t(result), length));
}

extern "C" int vexa_sta_ht_get_stats(stainfo *station, uint32_t selector)
{
    const unique_fd device = open_device(__func__);
    if (!device)
        return -1;
    statistics_request request{address_of(station->mac), selector, 0, address_of(&station->tracking)};
    const int result = issue(device, request);
    if (result < 0)
        log_err("ioctl failed: mac: " MAC_FORMAT " errno:%d", MAC_OCTETS(station->mac), errno);
    return result;
}

extern "C" int vexa_sta_ht_set_keyid(const uint8_t *mac, uint32_t value, const char *keyid)
{
    const unique_fd device = open_device(__func__);
    if (!device)
        return -1;
    keyid_request request{address_of(mac), value, {}, 0};
    copy_text(request.keyid, sizeof request.keyid, keyid);
    const int result = issue(device, request);
    if (result < 0)
        log_err("%s ioctl failed: mac: " MAC_FORMAT " errno:%d", "keyid", MAC_OCTETS(mac), errno);
    return result;
}

// A failed request says how long the frame is, too.
extern "C" int vexa_sta_ht_get_probe_frame(const uint8_t *mac, uint32_t selector, void *frame, uint32_t *length)
{
    const unique_fd device = open_device(__func__);
    if (!device)
        return -1;
    const uint32_t room = *length;
    probe_frame_request request{address_of(mac), selector, room, address_of(frame)};
    const int result = issue(device, request);
    *length = std::min(request.length, room);
    return result;
}
