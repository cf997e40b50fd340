// SPDX-License-Identifier: MIT
#include "wireless.h"

#include "driver_list.h"
#include "message.h"

#include <arpa/inet.h>
#include <cstring>
#include <functional>
#include <map>
#include <set>

namespace {

// of a field that is filled up with zeros
template <size_t size>
json_t *field_text(const char (&field)[size])
{
    const std::string_view bytes{field, strnlen(field, size)};
    return bytes.empty() ? json_null() : text(bytes);
}

const char *mode_of(const wireless_info &info)
{
    static constexpr const char *words[] = {nullptr, "station", "ap"};
    return info.mode < std::size(words) ? words[info.mode] : nullptr;
}

json_t *mac_or_null(const uint8_t mac[6])
{
    static constexpr uint8_t none[6] = {};
    return memcmp(mac, none, sizeof none) == 0 ? json_null() : text(mac_text(mac));
}

json_t *usage_of(const char *name)
{
    char usage[16];
    return text(freadline(("/var/run/vapusage." + std::string{name}).c_str(), usage, sizeof usage, "user"));
}

json_t *vap_document(const vap_entry &vap)
{
    wireless_info info{};
    (void)fill_wireless_info(vap.ifname, &info); // what is not answered stays 0
    const station_list stations{get_stalist(vap.ifname)};
    int64_t count = 0;
    for_each<stainfo>(stations.get(), [&](const stainfo &) { count++; });
    return object({{"name", text(vap.ifname)},
                   {"index", number(vap.ifindex)},
                   {"radio", text(vap.parent)},
                   {"ssid", field_text(info.essid)},
                   {"bssid", mac_or_null(info.bssid)},
                   {"mode", text_or_null(mode_of(info))},
                   {"channel", info.channel ? number(info.channel) : json_null()},
                   {"usage", usage_of(vap.ifname)},
                   {"stations", stations ? number(count) : json_null()}});
}

json_t *address_of(const stainfo &station)
{
    char written[INET_ADDRSTRLEN];
    const in_addr address{station.ip};
    return station.ip ? text(inet_ntop(AF_INET, &address, written, sizeof written)) : json_null();
}

const char *standard_of(const stainfo &s)
{
    const struct {
        uint32_t is;
        const char *name;
    } standards[] = {{s.is_11ax, "ax"}, {s.is_11ac, "ac"}, {s.is_11n, "n"}, {s.is_11a, "a"}, {s.is_11b, "b"}};
    for (const auto &standard : standards)
        if (standard.is)
            return standard.name;
    return nullptr;
}

json_t *station_row(const char *vap, const stainfo &s)
{
    if (!s.valid)
        return object({{"mac", text(mac_text(s.mac))}, {"vap", text(vap)}, {"known", flag(false)}});
    return object({{"mac", text(mac_text(s.mac))},
                   {"vap", text(vap)},
                   {"known", flag(true)},
                   {"name", field_text(s.hostname)},
                   {"address", address_of(s)},
                   {"standard", text_or_null(standard_of(s))},
                   {"signal_dbm", number(s.noise + s.rssi)},
                   {"noise_dbm", number(s.noise)},
                   {"tx_mbit", number(s.tx_rate / 1000)},
                   {"rx_mbit", number(s.rx_rate / 1000)},
                   {"uptime", number(s.uptime)},
                   {"idle", number(s.idletime)}});
}

// What the table of stations has no room for.
void add_details(json_t *row, const stainfo &s)
{
    const json_ref more{object({
        {"association_id", number(s.associd)},
        {"vlan", number(s.vlan_id)},
        {"identity", s.identity_len ? text({reinterpret_cast<const char *>(s.identity), s.identity_len}) : json_null()},
        {"fast_transition", flag(s.is_11r != 0)},
        {"width_mhz", number(s.bw_max_supp)},
        {"frequency_mhz", number(s.state)},
        {"rx_bytes", number(static_cast<int64_t>(s.rx_bytes))},
        {"rx_packets", number(static_cast<int64_t>(s.rx_packets))},
        {"tx_bytes", number(static_cast<int64_t>(s.tx_bytes))},
        {"tx_attempts", number(static_cast<int64_t>(s.wifi_tx_attempts))},
        {"tx_retries", number(static_cast<int64_t>(s.tx_retries))},
        {"tx_dropped", number(static_cast<int64_t>(s.wifi_tx_dropped))},
        {"tx_efficiency", number(s.tx_eff_pct)},
        {"tx_latency_us", s.tx_latency.avg < 0 ? json_null() : number(s.tx_latency.avg)},
        {"tcp_rx_latency_ms", s.rx_tcp_stats.lat.average < 0 ? json_null() : number(s.rx_tcp_stats.lat.average)},
        {"tcp_tx_latency_ms", s.tx_tcp_stats.lat.average < 0 ? json_null() : number(s.tx_tcp_stats.lat.average)},
    })};
    json_object_update(row, more.get());
}

void add_tracking(json_t *row, stainfo &s)
{
    if (vexa_sta_ht_get_stats(&s, 0) < 0)
        return;
    const vexa_sta_tracking &t = s.tracking;
    const json_ref more{object({
        {"has_address", flag(t.ip_obtained != 0)},
        {"answers_arp", flag(t.arp_answered != 0)},
        {"dns_timeouts", number(t.dns_timeouts)},
        {"dns_latency_ms", t.dns_latency == UINT32_MAX ? json_null() : number(t.dns_latency)},
        {"round_trip_ms", number(t.icmp_rtt)},
        {"disconnects", number(t.disconnects)},
    })};
    json_object_update(row, more.get());
}

int64_t strength(const scanlist &n)
{
    return static_cast<int8_t>(n.noise) + static_cast<int64_t>(n.rssi);
}

json_t *network_row(const std::string &radio, const scanlist &n)
{
    return object({{"radio", text(radio)},
                   {"bssid", text(mac_text(n.bssid))},
                   {"ssid", field_text(n.ssid)},
                   {"channel", number(n.channel)},
                   {"frequency_mhz", number(n.frequency)},
                   {"width_mhz", number(n.width)},
                   {"signal_dbm", number(strength(n))},
                   {"secured", flag(n.privacy != 0)},
                   {"ad_hoc", flag(n.ibss != 0)},
                   {"age_ms", number(n.age)},
                   {"family", flag(n.vexa_ie != 0)},
                   {"family_name", field_text(n.vexa_ie_name)},
                   {"family_mac", mac_or_null(n.vexa_ie_mac)}});
}

} // namespace

std::vector<vap_entry> find_vaps()
{
    std::vector<vap_entry> vaps(VEXA_MAX_VAPS);
    vaps.resize(static_cast<size_t>(enum_vaps(vaps.data(), vaps.size())));
    return vaps;
}

const vap_entry *find_vap(const std::vector<vap_entry> &vaps, const char *name)
{
    for (const vap_entry &vap : vaps)
        if (strcmp(vap.ifname, name) == 0)
            return &vap;
    return nullptr;
}

json_ref vap_documents()
{
    json_ref rows{list()};
    for (const vap_entry &vap : find_vaps())
        append(rows.get(), vap_document(vap));
    return rows;
}

json_ref radio_document(const char *ifname)
{
    athstat counters{};
    counters.noise = INT32_MAX; // which no radio has
    get_athstat(ifname, &counters);
    if (counters.noise == INT32_MAX)
        return nullptr;
    wireless_info info{};
    (void)fill_wireless_info(ifname, &info);
    return json_ref{object({{"name", text(ifname)},
                            {"ssid", field_text(info.essid)},
                            {"bssid", mac_or_null(info.bssid)},
                            {"mode", text_or_null(mode_of(info))},
                            {"channel", number(info.channel)},
                            {"frequency_mhz", number(info.frequency)},
                            {"width_mhz", number(info.width)},
                            {"chains", number(info.chains)},
                            {"max_mbit", number(info.max_rate / 1000)},
                            {"power_dbm", number(static_cast<int32_t>(info.txpower))},
                            {"antenna_gain", number(get_antenna_gain(ifname))},
                            {"radar_check", flag(info.dfswait != 0)},
                            {"noise_dbm", number(counters.noise)},
                            {"busy", number(counters.busy)},
                            {"busy_rx", number(counters.busy_rx)},
                            {"busy_tx", number(counters.busy_tx)},
                            {"interference", number(counters.interference)},
                            {"rx_packets", number(counters.rx_packets)},
                            {"rx_errors", number(counters.rx_errors)},
                            {"tx_packets", number(counters.tx_packets)},
                            {"tx_errors", number(counters.tx_errors)},
                            {"tx_retries", number(counters.tx_retries)},
                            {"tx_dropped", number(counters.tx_dropped)},
                            {"beacons", number(counters.beacons)}})};
}

json_ref station_documents(const char *wanted, std::string &silent)
{
    json_ref rows{list()};
    for (const vap_entry &vap : find_vaps()) {
        if (wanted && strcmp(wanted, vap.ifname) != 0)
            continue;
        const station_list stations = stations_of(vap.ifname, silent);
        for_each<stainfo>(stations.get(), [&](const stainfo &s) { append(rows.get(), station_row(vap.ifname, s)); });
    }
    return rows;
}

int no_stations(output &out, const std::string &silent)
{
    return out.fail(status_unavailable, "no answer about the stations of " + silent);
}

json_ref station_document(const uint8_t mac[6])
{
    for (const vap_entry &vap : find_vaps()) {
        const station_list stations{get_stalist(vap.ifname)};
        json_t *found = nullptr;
        for_each<stainfo>(stations.get(), [&](stainfo &s) {
            if (found || memcmp(s.mac, mac, sizeof s.mac) != 0)
                return;
            found = station_row(vap.ifname, s);
            if (s.valid)
                add_details(found, s);
            add_tracking(found, s);
        });
        if (found)
            return json_ref{found};
    }
    return nullptr;
}

json_ref network_documents(const char *ifname)
{
    std::set<std::string> radios;
    if (ifname)
        radios.insert(ifname);
    else
        for (const vap_entry &vap : find_vaps())
            radios.insert(vap.parent);
    std::multimap<int64_t, json_ref, std::greater<>> sorted;
    for (const std::string &radio : radios) {
        const network_list networks{get_scanlist(radio.c_str())};
        for_each<scanlist>(networks.get(),
                           [&](const scanlist &n) { sorted.emplace(strength(n), json_ref{network_row(radio, n)}); });
    }
    json_ref rows{list()};
    for (auto &[dbm, row] : sorted)
        append(rows.get(), row.release());
    return rows;
}
