// SPDX-License-Identifier: MIT
#include "sim/driver/description.h"

#include "sim/driver/errors.h"
#include "sim/driver/layouts.h"
#include "sim/driver/scan_entries.h"
#include "sim/error.h"

#include <algorithm>
#include <sstream>

namespace sim::driver {

namespace {

constexpr struct {
    const char *name;
    uint32_t number;
} modes[] = {{"managed", 2}, {"master", 3}};

class reader {
public:
    explicit reader(std::string_view text) : objects_{read_objects(text)} {}
    description read();

private:
    void add_radio(const object &);
    void add_vap(const object &);
    void add_station(const object &);
    void add_neighbour(const object &);
    void add_fault(const object &);
    void add_forgery(const object &);
    void add_setting(const object &);
    void check_quality(const object &);

    keys qualities(const std::string &names, int depth = 0) const;
    const object &get(std::string_view kind, const std::string &name) const;
    radio &get_radio(const std::string &name);
    vap &get_vap(const std::string &name);

    static constexpr struct reads {
        const char *name;
        void (reader::*add)(const object &);
    } kinds[] = {
        // a kind speaks of those above it
        {"radio", &reader::add_radio},         {"vap", &reader::add_vap},
        {"quality", &reader::check_quality},   {"station", &reader::add_station},
        {"neighbour", &reader::add_neighbour}, {"fail", &reader::add_fault},
        {"answer", &reader::add_forgery},      {"setting", &reader::add_setting},
    };

    std::vector<object> objects_;
    description out_;
};

bool is_one_of(std::string_view key, std::initializer_list<std::string_view> others)
{
    return std::find(others.begin(), others.end(), key) != others.end();
}

void check_keys(const object &o, std::initializer_list<const layout *> layouts,
                std::initializer_list<std::string_view> others)
{
    for (const auto &[key, value] : o.values)
        if (!is_one_of(key, others) &&
            std::none_of(layouts.begin(), layouts.end(), [&k = key](const layout *l) { return l->has(k); }))
            throw error("a " + o.kind + " has no '" + (key.empty() ? value : key) + "'");
}

std::string value_or(const keys &values, std::string_view key, const std::string &otherwise)
{
    const auto found = values.find(key);
    return found == values.end() ? otherwise : found->second;
}

moving_value number_of(const keys &values, std::string_view key, const std::string &otherwise = "0")
{
    return moving_value::of(value_or(values, key, otherwise));
}

template <typename T>
std::optional<T> optional_number(const keys &values, std::string_view key)
{
    if (!values.contains(key))
        return {};
    return T(number_of(values, key).base);
}

double phase_of(std::string_view name)
{
    uint32_t hash = 2166136261; // FNV-1a
    for (const char c : name)
        hash = (hash ^ uint8_t(c)) * 16777619;
    return double(hash % 1000) / 1000;
}

// "GETMACS", "GETMACS@ra0"
std::pair<request, std::string> target_of(const std::string &name)
{
    const size_t at = std::min(name.find('@'), name.size());
    const request what = request_of(name.substr(0, at));
    if (what == request{})
        throw error("no request is called " + name.substr(0, at));
    return {what, at == name.size() ? "" : name.substr(at + 1)};
}

description reader::read()
{
    for (const object &o : objects_)
        if (std::none_of(std::begin(kinds), std::end(kinds), [&](const reads &k) { return k.name == o.kind; }))
            throw error("line " + std::to_string(o.line) + ": nothing is called " + o.kind);
    for (const reads &k : kinds)
        for (const object &o : objects_)
            try {
                if (k.name == o.kind)
                    (this->*k.add)(o);
            } catch (const error &wrong) {
                throw error("line " + std::to_string(o.line) + ": " + wrong.what());
            }
    std::sort(out_.stations.begin(), out_.stations.end(),
              [](const station &a, const station &b) { return a.address < b.address; });
    return std::move(out_);
}

const object &reader::get(std::string_view kind, const std::string &name) const
{
    const auto found = std::find_if(objects_.begin(), objects_.end(),
                                    [&](const object &o) { return o.kind == kind && o.name == name; });
    if (found == objects_.end())
        throw error("there is no " + std::string(kind) + " '" + name + "'");
    return *found;
}

radio &reader::get_radio(const std::string &name)
{
    (void)get("radio", name);
    return *std::find_if(out_.radios.begin(), out_.radios.end(), [&](const radio &r) { return r.name == name; });
}

vap &reader::get_vap(const std::string &name)
{
    (void)get("vap", name);
    return *std::find_if(out_.vaps.begin(), out_.vaps.end(), [&](const vap &v) { return v.name == name; });
}

void reader::add_radio(const object &o)
{
    check_keys(o, {&radio_statistics}, {"dfs", "gain", "station_mode"});
    out_.radios.push_back({o.name,
                           record(radio_statistics, o.values, phase_of(o.name)),
                           number_of(o.values, "dfs"),
                           number_of(o.values, "gain"),
                           {},
                           {}});
}

void reader::add_vap(const object &o)
{
    check_keys(o, {}, {"radio", "usage", "ssid", "bssid", "mode", "power"});
    const std::string mode = value_or(o.values, "mode", "master");
    const auto *known = std::find_if(std::begin(modes), std::end(modes), [&](const auto &m) { return m.name == mode; });
    out_.vaps.push_back({o.name,
                         value_or(o.values, "usage", "user"),
                         value_or(o.values, "ssid", ""),
                         mac_of(value_or(o.values, "bssid", "00:00:00:00:00:00")),
                         known == std::end(modes) ? uint32_t(moving_value::of(mode).base) : known->number,
                         int32_t(number_of(o.values, "power").base),
                         &get_radio(value_or(o.values, "radio", "")),
                         {}});
}

keys reader::qualities(const std::string &names, int depth) const
{
    constexpr int deepest = 8;
    if (depth > deepest)
        throw error("qualities are like each other: " + names);
    keys values;
    std::istringstream list(names);
    for (std::string name; std::getline(list, name, ',');) {
        keys its = get("quality", name).values;
        its.merge(qualities(value_or(its, "like", ""), depth + 1));
        values.merge(its);
    }
    return values;
}

void reader::check_quality(const object &o)
{
    check_keys(o, {&station_info, &node_statistics, &tracking_statistics}, {"load", "known", "like", "ssid"});
    (void)qualities(o.name);
}

void reader::add_station(const object &o)
{
    check_keys(o, {&station_info, &node_statistics, &tracking_statistics},
               {"vap", "quality", "load", "known", "probe", "ssid"});
    vap &its_vap = get_vap(value_or(o.values, "vap", ""));
    const keys &its_radio = get("radio", its_vap.its_radio->name).values;
    keys values = o.values;
    values.merge(qualities(value_or(values, "quality", "")));
    values.merge(keys{{"mac", o.name},
                      {"associd", std::to_string(its_vap.stations.size() + 1)},
                      {"noise", value_or(its_radio, "noise", "0")},
                      {"state", value_or(its_radio, "frequency", "0")},
                      {"radio_mode", value_or(its_radio, "station_mode", "0")},
                      {"tx_power", std::to_string(its_vap.power)},
                      {"ssid", its_vap.ssid}});
    const mac address = mac_of(o.name);
    const double phase = phase_of(o.name);
    station s{address,
              record(station_info, values, phase),
              record(node_statistics, values, phase),
              record(tracking_statistics, values, phase),
              probe_frame_of(address, values),
              value_or(values, "known", "yes") != "no"};
    its_vap.stations.push_back(address);
    out_.stations.push_back(std::move(s));
}

void reader::add_neighbour(const object &o)
{
    for (const auto &[key, value] : o.values)
        if (!scan_entry.has(key) && !is_one_of(key, {"radio", "ssid"}) && !is_element_key(key))
            throw error("a neighbour has no '" + (key.empty() ? value : key) + "'");
    radio &hears = get_radio(value_or(o.values, "radio", ""));
    const std::string ssid = value_or(o.values, "ssid", "");
    const bytes elements = elements_of(o.values);
    const size_t length = scan_entry.size + ssid.size() + elements.size();
    keys values = o.values;
    values.merge(keys{{"bssid", o.name},
                      {"noise", value_or(get("radio", hears.name).values, "noise", "0")},
                      {"entry_length", std::to_string(length)},
                      {"ssid_length", std::to_string(ssid.size())},
                      {"ies_length", std::to_string(elements.size())}});
    const size_t at = hears.neighbours.size();
    hears.heads.push_back({at, record(scan_entry, values, phase_of(o.name))});
    hears.neighbours.resize(at + scan_entry.size);
    hears.neighbours.insert(hears.neighbours.end(), ssid.begin(), ssid.end());
    hears.neighbours.insert(hears.neighbours.end(), elements.begin(), elements.end());
}

void reader::add_fault(const object &o)
{
    check_keys(o, {}, {"", "below"});
    const auto [what, on] = target_of(o.name);
    const int number = error_number(value_or(o.values, "", ""));
    if (number != 0)
        out_.faults.push_back({what, on, number, uint32_t(number_of(o.values, "below", "0x7fffffff").base)});
}

void reader::add_forgery(const object &o)
{
    check_keys(o, {}, {"hex", "cut", "length"});
    const auto [what, on] = target_of(o.name);
    forgery f{what, on, {}, optional_number<size_t>(o.values, "cut"), optional_number<uint32_t>(o.values, "length")};
    if (o.values.contains("hex"))
        f.content = bytes_of_hex(o.values.at("hex"));
    out_.forgeries.push_back(std::move(f));
}

void reader::add_setting(const object &o)
{
    const std::string value = value_or(o.values, "", "");
    if (o.name == "time")
        out_.stopped_at = value == "passes" ? std::optional<double>{} : double(moving_value::of(value).base);
    else if (o.name == "log" && is_one_of(value, {"all", "changes"}))
        out_.logs_all = value == "all";
    else
        throw error("there is no such setting");
}

template <typename List>
auto find_target(const List &list, request what, std::string_view on, uint32_t length = 0)
{
    return std::find_if(list.begin(), list.end(), [&](const auto &entry) {
        const bool reaches = entry.what == what && (entry.on.empty() || entry.on == on);
        if constexpr (requires { entry.below; })
            return reaches && length < entry.below;
        return reaches;
    });
}

} // namespace

description read_description(std::string_view text)
{
    return reader(text).read();
}

const vap *description::find_vap(std::string_view name) const
{
    const auto found = std::find_if(vaps.begin(), vaps.end(), [name](const vap &v) { return v.name == name; });
    return found == vaps.end() ? nullptr : &*found;
}

const station *description::find_station(const mac &address) const
{
    const auto found = std::lower_bound(stations.begin(), stations.end(), address,
                                        [](const station &s, const mac &a) { return s.address < a; });
    return found == stations.end() || found->address != address ? nullptr : &*found;
}

const fault *description::find_fault(request what, std::string_view on, uint32_t length) const
{
    const auto found = find_target(faults, what, on, length);
    return found == faults.end() ? nullptr : &*found;
}

const forgery *description::find_forgery(request what, std::string_view on) const
{
    const auto found = find_target(forgeries, what, on);
    return found == forgeries.end() ? nullptr : &*found;
}

} // namespace sim::driver
