// SPDX-License-Identifier: MIT
#include "sim/descriptor.h"
#include "sim/driver/layouts.h"
#include "sim/driver/requests.h"
#include "sim/record/disguise.h"
#include "sim/record/recording.h"

#include <algorithm>
#include <fstream>
#include <libvexa.h>
#include <memory>
#include <net/if.h>
#include <set>
#include <sys/socket.h>

namespace sim {

namespace {

using driver::keys;

struct drop_stations {
    void operator()(vexa_list *stations) const noexcept { free_stalist(stations); }
};

std::string usage_of(const char *vap)
{
    std::ifstream file(std::string{"/var/run/vapusage."} + vap);
    std::string usage;
    std::getline(file, usage);
    return usage.empty() ? "user" : usage;
}

class recorder {
public:
    explicit recorder(disguise &names) : names_{names} {}

    std::string lines()
    {
        vap_entry vaps[VEXA_MAX_VAPS];
        const int count = enum_vaps(vaps, std::size(vaps));
        for (int i = 0; i < count; i++) {
            if (radios_.insert(vaps[i].parent).second)
                add_radio(vaps[i]);
            add_vap(vaps[i]);
        }
        return text_;
    }

private:
    // What a request answers; no values when it fails.
    keys ask(const char *vap, driver::request what, const driver::layout &layout, const driver::mac &of = {},
             size_t mac_at = 0)
    {
        driver::bytes record(layout.size);
        std::copy(of.begin(), of.end(), &record[mac_at]);
        if (get80211priv(socket_.get(), vap, int(what), 0, 0, record.data(), uint16_t(record.size())) < 0)
            return {};
        return layout.read(record.data());
    }

    uint32_t ask_word(const char *vap, driver::request what)
    {
        uint8_t word[4] = {};
        (void)get80211priv(socket_.get(), vap, int(what), 0, 0, word, sizeof word);
        return uint32_t(driver::take(word, sizeof word));
    }

    void add(const std::string &begin, const keys &values)
    {
        text_ += begin;
        for (const auto &[key, value] : values)
            text_ += ' ' + key + '=' + driver::quoted(value);
        text_ += '\n';
    }

    void add_radio(const vap_entry &vap)
    {
        keys values = ask(vap.ifname, driver::request::radio_stat, driver::radio_statistics);
        values["dfs"] = std::to_string(ask_word(vap.ifname, driver::request::dfs_wait));
        values["gain"] = std::to_string(ask_word(vap.ifname, driver::request::antenna_gain));
        heard_by_ = vap.parent;
        add("radio " + heard_by_, values);
        (void)parse_scan_results(
            vap.ifname,
            [](const uint8_t *entry, size_t length, void *that) {
                static_cast<recorder *>(that)->add_neighbour(entry, length);
                return 0;
            },
            this);
    }

    void add_vap(const vap_entry &vap)
    {
        char ssid[IFNAMSIZ + 33] = "";
        wireless_info info{};
        (void)fill_wireless_info(vap.ifname, &info);
        (void)get_if_essid(vap.ifname, ssid, sizeof ssid);
        driver::mac bssid{};
        std::copy(std::begin(info.bssid), std::end(info.bssid), bssid.begin());
        add(std::string{"vap "} + vap.ifname, {{"radio", vap.parent},
                                               {"usage", usage_of(vap.ifname)},
                                               {"ssid", names_.network(ssid)},
                                               {"bssid", driver::text_of(names_.address(bssid))},
                                               {"mode", info.mode == 1 ? "managed" : "master"},
                                               {"power", std::to_string(info.txpower)}});
        const std::unique_ptr<vexa_list, drop_stations> stations{get_stalist(vap.ifname)};
        for (vexa_list *link = stations ? stations->next : nullptr; link && link != stations.get(); link = link->next)
            add_station(vap.ifname, *reinterpret_cast<stainfo *>(link));
    }

    void add_station(const char *vap, stainfo &station)
    {
        driver::mac address{};
        std::copy(std::begin(station.mac), std::end(station.mac), address.begin());
        keys values = ask(vap, driver::request::sta_info, driver::station_info, address, driver::mac_in_station_info);
        values.merge(
            ask(vap, driver::request::node_stat, driver::node_statistics, address, driver::mac_in_node_statistics));
        if (vexa_sta_ht_get_stats(&station, 0) >= 0)
            values.merge(driver::tracking_statistics.read(reinterpret_cast<const uint8_t *>(&station.tracking)));
        values.erase("mac");
        for (const char *owned : {"host", "identity"})
            if (const auto name = values.find(owned); name != values.end())
                name->second = names_.person(name->second);
        values.erase("identity_length");
        if (const auto serial = values.find("serial"); serial != values.end())
            serial->second = names_.words(serial->second);
        for (const char *assumed : {"associd", "noise", "state", "radio_mode", "tx_power"})
            values.try_emplace(assumed, "0");
        values["vap"] = vap;
        if (!station.valid)
            values["known"] = "no";
        add("station " + driver::text_of(names_.address(address)), values);
    }

    void add_neighbour(const uint8_t *entry, size_t length)
    {
        if (length < driver::scan_entry.size)
            return;
        keys values = driver::scan_entry.read(entry);
        const size_t room = length - driver::scan_entry.size;
        const size_t ssid_length = std::min<size_t>(room, std::stoul("0" + values["ssid_length"]));
        const auto *ssid = reinterpret_cast<const char *>(entry) + driver::scan_entry.size;
        const std::string bssid = names_.words(values["bssid"]);
        for (const char *computed : {"bssid", "entry_length", "ssid_length", "ies_length"})
            values.erase(computed);
        values["ssid"] = names_.network({ssid, ssid_length});
        values["radio"] = heard_by_;
        add("neighbour " + bssid, values);
    }

    disguise &names_;
    descriptor socket_{socket(AF_INET, SOCK_DGRAM | SOCK_CLOEXEC, 0)};
    std::set<std::string> radios_;
    std::string heard_by_, text_;
};

} // namespace

void record_radios(disguise &names, const std::filesystem::path &file)
{
    const std::string lines = recorder{names}.lines();
    if (!lines.empty())
        write_file(file, "# docs/wireless-description.md says how to read it.\n" + lines);
}

} // namespace sim
