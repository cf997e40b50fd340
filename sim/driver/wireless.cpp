// SPDX-License-Identifier: MIT
// Requests on a socket: a block of 32 bytes with the name of the interface, then a pointer to data, its length and
// flags, or a short answer in their place.
#include "sim/driver/layouts.h"
#include "sim/driver/reply.h"

#include <bit>

namespace sim::driver {

namespace {

constexpr size_t pointer_at = 16, length_at = 24, flags_at = 26, value_at = 16, bssid_at = 18;
constexpr uint16_t ethernet = 1;
constexpr uint16_t essid_is_set = 1;
constexpr uint16_t power_is_fixed = 1;
constexpr size_t limit_size = 8;
constexpr size_t text_size = 128;

struct data {
    uint8_t *at;
    size_t length;
};

const station *station_at(const context &c, const data &in, size_t offset)
{
    mac address{};
    if (!in.at || in.length < offset + address.size())
        return nullptr;
    std::copy_n(in.at + offset, address.size(), address.begin());
    const station *s = c.air.find_station(address);
    return s && s->known ? s : nullptr;
}

bool serves(const vap &v, const station &s)
{
    return std::find(v.stations.begin(), v.stations.end(), s.address) != v.stations.end();
}

int sta_info(const context &c, const vap &v, const data &in)
{
    const station *s = station_at(c, in, mac_in_station_info);
    return s && serves(v, *s) ? c.out.append(s->info, c.seconds) : -ENOENT;
}

int node_statistics_of(const context &c, const vap &v, const data &in)
{
    const station *s = station_at(c, in, mac_in_node_statistics);
    return s && serves(v, *s) ? c.out.append(s->node, c.seconds) : -ENOENT;
}

// Stations of what serves people are known to the tracker.
int get_macs(const context &c, const vap &v, const data &)
{
    if (!v.is_link())
        return -EOPNOTSUPP;
    for (const mac &address : v.stations)
        if (const int result = c.out.append(address))
            return result;
    return 0;
}

int radio_statistics_of(const context &c, const vap &v, const data &)
{
    return c.out.append(v.its_radio->statistics, c.seconds);
}

int scan_results(const context &c, const vap &v, const data &)
{
    const radio &r = *v.its_radio;
    uint8_t *entries = c.out.add(r.neighbours.size());
    if (!entries)
        return -E2BIG;
    std::copy(r.neighbours.begin(), r.neighbours.end(), entries);
    for (const radio::moving_entry &entry : r.heads)
        entry.head.write(entries + entry.at, c.seconds);
    return 0;
}

int dfs_wait(const context &c, const vap &v, const data &)
{
    return c.out.append_word(v.its_radio->dfs_wait.at(c.seconds, 0));
}

int antenna_gain(const context &c, const vap &v, const data &)
{
    return c.out.append_word(v.its_radio->antenna_gain.at(c.seconds, 0));
}

int essid(const context &c, const vap &v, const data &)
{
    return c.out.append(v.ssid);
}

int set(const context &c, const vap &v, const data &in)
{
    char text[text_size + 1] = {};
    if (!in.at)
        return -EFAULT;
    std::copy_n(in.at, std::min(in.length, text_size), text);
    if (strncmp(text, "bga=", 4) != 0 && strncmp(text, "SiteSurvey=", 11) != 0)
        return -EINVAL;
    c.log("SET", "%s %s", v.name.c_str(), text);
    return 0;
}

int rate_limit(const context &c, const vap &v, const data &in)
{
    if (!in.at || in.length < limit_size)
        return -EINVAL;
    c.log("RATELIMIT", "%s %u %u", v.name.c_str(), unsigned(take(in.at, 4)), unsigned(take(in.at + 4, 4)));
    return 0;
}

// Those whose answer goes into the program's buffer; the others only take.
constexpr struct {
    request what;
    int (*answer)(const context &, const vap &, const data &);
    bool gives = true;
} requests[] = {
    {request::sta_info, sta_info},
    {request::get_macs, get_macs},
    {request::node_stat, node_statistics_of},
    {request::radio_stat, radio_statistics_of},
    {request::scan_results, scan_results},
    {request::dfs_wait, dfs_wait},
    {request::antenna_gain, antenna_gain},
    {request::get_essid, essid},
    {request::set, set, false},
    {request::rate_limit, rate_limit, false},
};

int answer_in_block(const context &c, const vap &v, uint8_t *block)
{
    switch (c.what) {
    case request::get_mode:
        put(block + value_at, 4, v.mode);
        return 0;
    case request::get_bssid:
        put(block + value_at, 2, ethernet);
        std::copy(v.bssid.begin(), v.bssid.end(), block + bssid_at);
        return 0;
    case request::get_tx_power:
        put(block + value_at, 8, uint32_t(v.power) | uint64_t{power_is_fixed} << 32);
        return 0;
    default:
        return -EOPNOTSUPP;
    }
}

} // namespace

int answer_wireless(const context &c, const vap &v, uint8_t *block)
{
    const data in{std::bit_cast<uint8_t *>(uintptr_t(take(block + pointer_at, sizeof(void *)))),
                  size_t(take(block + length_at, 2))};
    const auto *r =
        std::find_if(std::begin(requests), std::end(requests), [&](const auto &known) { return known.what == c.what; });
    if (const fault *f = c.air.find_fault(c.what, v.name, uint32_t(in.length)))
        return -f->number;
    if (r == std::end(requests))
        return answer_in_block(c, v, block);
    if (const int result = r->answer(c, v, in); result != 0 || !r->gives)
        return result;
    const int64_t used = c.out.deliver(in.at, in.length, c.air.find_forgery(c.what, v.name));
    if (used < 0)
        return int(used);
    put(block + length_at, 2, uint64_t(used));
    if (c.what == request::get_essid)
        put(block + flags_at, 2, essid_is_set);
    return 0;
}

} // namespace sim::driver
