// SPDX-License-Identifier: MIT
#include "sim/driver/description.h"
#include "sim/wireless.h"
#include "tests/support/device.h"

#include <filesystem>

using namespace sim::driver;

namespace {

uint64_t number(const bytes &data, size_t at)
{
    return take(&data[at], 8);
}

template <typename Record, typename F>
size_t for_each(const vexa_list *list, F what)
{
    size_t count = 0;
    for (const vexa_list *at = list->next; at != list; at = at->next, count++)
        what(*const_cast<Record *>(reinterpret_cast<const Record *>(at)));
    return count;
}

} // namespace

TEST(devices, stay_plausible_as_time_goes_by)
{
    size_t devices = 0;
    for (const auto &entry : std::filesystem::directory_iterator(VEXA_DEVICES)) {
        const sim::wireless files = sim::read_wireless(entry.path() / "wireless");
        if (files.files.empty())
            continue;
        SCOPED_TRACE(entry.path().filename());
        devices++;
        const description air = read_description(files.files[0].content);
        for (const station &s : air.stations) {
            uint64_t packets = 0;
            for (const double seconds : {0., 11., 23., 35., 47., 600., 86400., 8640000.}) {
                bytes node(s.node.size());
                s.node.write(node.data(), seconds);
                EXPECT_LE(number(node, 376), number(node, 384)) << "retries of attempts";
                EXPECT_LE(number(node, 400), number(node, 384)) << "drops of attempts";
                EXPECT_LE(number(node, 328) + number(node, 336), number(node, 320)) << "successes and drops of all";
                EXPECT_LE(packets, number(node, 328));
                packets = number(node, 328);
            }
        }
        for (const radio &r : air.radios)
            for (size_t i = 0, at = 0; i < r.heads.size(); i++) {
                bytes head(r.heads[i].head.size());
                r.heads[i].head.write(head.data(), 1);
                EXPECT_EQ(r.heads[i].at, at);
                at += take(head.data(), 2);
                EXPECT_EQ(at, i + 1 < r.heads.size() ? r.heads[i + 1].at : r.neighbours.size());
            }
    }
    EXPECT_GE(devices, 4u);
}

TEST(access_point, has_clients_of_every_kind_and_neighbours)
{
    vap_entry vaps[VEXA_MAX_VAPS];
    const int count = enum_vaps(vaps, VEXA_MAX_VAPS);
    EXPECT_EQ(count, 8);
    size_t stations = 0, well = 0, weak = 0, sleepy = 0, named = 0;
    uint32_t anomalies = 0;
    for (int i = 0; i < count; i++) {
        vexa_list *const list = get_stalist(vaps[i].ifname);
        ASSERT_NE(list, nullptr) << vaps[i].ifname;
        stations += for_each<stainfo>(list, [&](stainfo &s) {
            EXPECT_TRUE(s.valid && vexa_sta_ht_get_stats(&s, 0) >= 0);
            calc_sta_satisfaction(&s);
            anomalies |= s.satisfaction.anomalies_now;
            well += s.satisfaction.score_now > 95;
            weak += s.rssi < 16;
            sleepy += s.idletime > 100;
            named += s.hostname[0] != '\0';
        });
        free_stalist(list);
    }
    EXPECT_EQ(stations, 60u);
    EXPECT_GE(well, 20u);
    EXPECT_GE(weak, 5u);
    EXPECT_GE(sleepy, 5u);
    EXPECT_GE(named, 40u);
    EXPECT_EQ(anomalies, 0xff1au) << "each factor but those that nothing scores";
    size_t neighbours = 0, family = 0;
    for (const char *radio : {"ra0", "rai0"}) {
        vexa_list *const list = get_scanlist(radio);
        neighbours += for_each<scanlist>(list, [&](scanlist &found) { family += found.vexa_ie; });
        free_scanlist(list);
    }
    EXPECT_EQ(neighbours, 40u);
    EXPECT_EQ(family, 10u);
}
