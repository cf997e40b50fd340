// SPDX-License-Identifier: MIT
#include "satisfaction.h"

#include "driver_list.h"
#include "message.h"

#include <algorithm>
#include <cstring>
#include <memory>
#include <vector>

namespace {

// An interface with its clients, as the library scores it.
struct scored_vap : vexa_vap {
    scored_vap(const vap_entry &entry, std::string &silent) : vexa_vap{}, list{stations_of(entry.ifname, silent)}
    {
        memcpy(name, entry.ifname, sizeof name);
        memcpy(radio, entry.parent, sizeof radio);
        stations = list.get();
        std::fill(std::begin(metrics), std::end(metrics), -1);
    }
    station_list list;
    uint32_t clients = 0; // of these, station_count have a score
};
using vap_list = std::vector<std::unique_ptr<scored_vap>>; // of records that are linked, so they must not move

// Uplinks and downlinks lead to other access points, not to clients.
vap_list client_vaps(std::string &silent)
{
    std::vector<vap_entry> entries(VEXA_MAX_VAPS);
    entries.resize(static_cast<size_t>(enum_vaps(entries.data(), entries.size())));
    vap_list found;
    for (const vap_entry &entry : entries)
        if (!is_wireless_uplink_or_downlink_vap(entry.ifname))
            found.push_back(std::make_unique<scored_vap>(entry, silent));
    return found;
}

// The driver or the tracker does not know it: it counts as none of the clients.
bool cannot_score(stainfo &sta)
{
    return !sta.valid || vexa_sta_ht_get_stats(&sta, 0) < 0;
}

json_t *keys_of(uint32_t mask)
{
    json_t *keys = list();
    for (size_t i = 0; i < VEXA_FACTORS; i++)
        if (mask >> i & 1)
            append(keys, text(anomalies_bar_chart_keys[i]));
    return keys;
}

json_t *reason_of(uint32_t bit)
{
    for (size_t i = 0; i < VEXA_FACTORS; i++)
        if (bit >> i & 1)
            return text(reasons_bar_chart_keys[i]);
    return json_null();
}

json_t *score_or_null(int32_t score)
{
    return score < 0 ? json_null() : number(score);
}

json_t *factors_of(const vexa_score &score)
{
    json_t *factors = object({});
    for (size_t i = 0; i < VEXA_FACTORS; i++)
        if (score.subscores_now[i] >= 0)
            json_object_set_new(factors, reasons_bar_chart_keys[i], number(score.subscores_now[i]));
    return factors;
}

json_t *client_row(const scored_vap &vap, const stainfo &sta)
{
    const std::string mac = mac_text(sta.mac);
    const std::string_view host{sta.hostname, strnlen(sta.hostname, sizeof sta.hostname)};
    const bool scored = !sta.skip_satisfaction;
    return object({{"mac", text(mac)},
                   {"name", text(host.empty() ? mac : host)},
                   {"vap", text(vap.name)},
                   {"score", score_or_null(scored ? sta.satisfaction.score_real : -1)},
                   {"worst", reason_of(sta.satisfaction.reason)},
                   {"anomalies", keys_of(sta.satisfaction.anomalies)},
                   {"score_now", score_or_null(scored ? sta.satisfaction.score_now : -1)},
                   {"factors_now", scored ? factors_of(sta.satisfaction) : object({})},
                   {"experimental_score", score_or_null(scored ? sta.satisfaction_exp.score_real : -1)},
                   {"experimental_worst", reason_of(sta.satisfaction_exp.reason)}});
}

// Worst first, at the end those without a score.
json_ref client_rows(const vap_list &vaps)
{
    std::vector<std::pair<uint32_t, json_ref>> rows;
    for (const auto &vap : vaps)
        for_each<stainfo>(vap->stations, [&](const stainfo &sta) {
            rows.emplace_back(sta.skip_satisfaction ? -1 : sta.satisfaction.score_real, client_row(*vap, sta));
        });
    std::stable_sort(rows.begin(), rows.end(), [](const auto &a, const auto &b) { return a.first < b.first; });
    json_ref sorted{list()};
    for (auto &[score, row] : rows)
        append(sorted.get(), row.release());
    return sorted;
}

json_t *radio_row(const vexa_radio &radio, const vap_list &vaps)
{
    uint32_t clients = 0;
    for (const auto &vap : vaps)
        clients += strcmp(vap->radio, radio.name) == 0 ? vap->clients : 0;
    wireless_info info{};
    (void)fill_wireless_info(radio.name, &info);
    const network_list networks{get_scanlist(radio.name)};
    int64_t neighbours = 0;
    for_each<scanlist>(networks.get(), [&](const scanlist &) { neighbours++; });
    return object({{"name", text(radio.name)},
                   {"channel", number(info.channel)},
                   {"frequency_mhz", number(info.frequency)},
                   {"clients", number(clients)},
                   {"score", score_or_null(radio.score_mov)},
                   {"neighbours", number(neighbours)}});
}

} // namespace

// The record is fresh: what it is to look back on comes from the last cycle, and this one is kept for the next.
void satisfaction::recall(stainfo &sta, std::map<address, samples> &seen) const
{
    address mac;
    memcpy(mac.data(), sta.mac, mac.size());
    const auto before = last_.find(mac);
    const auto fill = [&](vexa_score &now, vexa_score samples::*which) {
        memset(now.history, -1, sizeof now.history);
        if (before == last_.end())
            return;
        const vexa_score &then = before->second.*which;
        memcpy(now.history[0], then.subscores_now, sizeof now.history[0]);
        memcpy(now.history[1], then.history[0], sizeof now.history - sizeof now.history[0]);
    };
    fill(sta.satisfaction, &samples::standard);
    fill(sta.satisfaction_exp, &samples::experimental);
    seen[mac] = {sta.satisfaction, sta.satisfaction_exp};
}

satisfaction_cycle satisfaction::next()
{
    std::string silent;
    const vap_list vaps = client_vaps(silent);
    std::map<address, samples> seen;
    vexa_ap ap{};
    ap.vaps = {&ap.vaps, &ap.vaps};
    ap.radios = {&ap.radios, &ap.radios};
    std::map<std::string, vexa_radio> radios;
    for (const auto &vap : vaps) {
        for_each<stainfo>(vap->stations, [&](stainfo &sta) {
            vap->clients++;
            sta.skip_satisfaction = cannot_score(sta);
            if (sta.skip_satisfaction)
                return;
            vap->station_count++;
            calc_sta_satisfaction(&sta);
            recall(sta, seen);
        });
        append(ap.vaps, vap->links);
        vexa_radio &radio = radios[vap->radio];
        if (radio.name[0] == '\0') {
            memcpy(radio.name, vap->radio, sizeof radio.name);
            append(ap.radios, radio.links);
        }
    }
    calc_satisfaction_mov(&ap);
    last_ = std::move(seen);
    satisfaction_cycle found{client_rows(vaps), json_ref{list()}, ap.score_mov, std::move(silent)};
    for (const auto &[name, radio] : radios)
        append(found.radios.get(), radio_row(radio, vaps));
    return found;
}
