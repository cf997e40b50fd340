// SPDX-License-Identifier: MIT
// Requests on the station tracker's device: a record with pointers into the program.
#include "sim/driver/layouts.h"
#include "sim/driver/reply.h"

#include <bit>

namespace sim::driver {

namespace {

constexpr size_t mac_at = 0, value_at = 8, key_at = 12, key_size = 32; // of a station
constexpr size_t stations_at = 8, stations_size_at = 16;               // of an interface
constexpr size_t statistics_at = 16, frame_length_at = 12, frame_at = 16;

uint8_t *pointer_in(const uint8_t *record, size_t at)
{
    return std::bit_cast<uint8_t *>(uintptr_t(take(record + at, sizeof(void *))));
}

const station *station_of(const context &c, const uint8_t *record)
{
    mac address{};
    const uint8_t *at = pointer_in(record, mac_at);
    if (!at)
        return nullptr;
    std::copy_n(at, address.size(), address.begin());
    return c.air.find_station(address);
}

int stations(const context &c, const char *interface, const uint8_t *record)
{
    const vap *v = c.air.find_vap(interface);
    if (!v || v->is_link())
        return -ENODEV;
    for (const mac &address : v->stations)
        if (const int result = c.out.append(address))
            return result;
    return int(c.out.deliver(pointer_in(record, stations_at), take(record + stations_size_at, 8),
                             c.air.find_forgery(c.what, interface)));
}

int statistics(const context &c, const uint8_t *record)
{
    const station *s = station_of(c, record);
    if (!s)
        return -ENOENT;
    (void)c.out.append(s->tracking, c.seconds);
    const int64_t used =
        c.out.deliver(pointer_in(record, statistics_at), tracking_statistics.size, c.air.find_forgery(c.what, ""));
    return int(std::min<int64_t>(used, 0));
}

int set_key_id(const context &c, const uint8_t *record)
{
    char key[key_size + 1] = {};
    const station *s = station_of(c, record);
    if (!s)
        return -ENOENT;
    std::copy_n(record + key_at, key_size, key);
    const mac &a = s->address;
    c.log("SET_KEYID", "%02x:%02x:%02x:%02x:%02x:%02x %u %s", a[0], a[1], a[2], a[3], a[4], a[5],
          unsigned(take(record + value_at, 4)), key);
    return 0;
}

// What does not fit is cut off, as with a read.
int probe_frame(const context &c, uint8_t *record)
{
    const station *s = station_of(c, record);
    const size_t room = take(record + frame_length_at, 4);
    put(record + frame_length_at, 4, 0);
    if (!s)
        return -ENOENT;
    const std::span frame{s->probe_frame};
    (void)c.out.append(frame.first(std::min(frame.size(), room)));
    const int64_t used = c.out.deliver(pointer_in(record, frame_at), room, c.air.find_forgery(c.what, ""));
    put(record + frame_length_at, 4, uint64_t(std::max<int64_t>(used, 0)));
    return int(std::min<int64_t>(used, 0));
}

} // namespace

int answer_tracker(const context &c, const char *interface, uint8_t *record)
{
    const bool lists = c.what == request::track_stations;
    const uint32_t room = lists ? uint32_t(take(record + stations_size_at, 8)) : 0;
    if (const fault *f = c.air.find_fault(c.what, lists ? interface : "", room))
        return -f->number;
    switch (c.what) {
    case request::track_stations:
        return stations(c, interface, record);
    case request::track_statistics:
        return statistics(c, record);
    case request::track_key_id:
        return set_key_id(c, record);
    default:
        return probe_frame(c, record);
    }
}

} // namespace sim::driver
