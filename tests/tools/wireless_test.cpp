// SPDX-License-Identifier: MIT
#include "tests/tools/vexactl.h"

TEST(wireless, shows_interfaces_stations_and_networks)
{
    the_device.put(
        "/var/run/vexa-sim/wireless",
        "radio ra0 channel=6 frequency=2437 width=20 noise=-92 busy=31 gain=3\n"
        "vap ra0 radio=ra0 ssid=\"Pier\\x1b7\" bssid=02:56:58:00:10:10 power=17\n"
        "station 02:57:00:00:00:01 vap=ra0 host=till-1 ip=192.0.2.7 rssi=-52 tx_rate=286800 uptime=77 "
        "capabilities=0x20000008 identity=anna dns_latency=0xffffffff icmp_rtt=9\n"
        "station 02:57:00:00:00:02 vap=ra0 known=no\n"
        "neighbour 02:33:00:00:00:02 radio=ra0 frequency=2412 rssi=-62\n"
        "neighbour 02:33:00:00:00:01 radio=ra0 ssid=\"Kiosk\" channel=1 rssi=-61 capability=0x10 width=40\n");
    EXPECT_THAT(vexactl({"vaps"}).out,
                testing::ContainsRegex("\nra0 +ra0 +Pier\\\\x1b7 +02:56:58:00:10:10 +6 +user +2\n"));
    EXPECT_THAT(vexactl({"stations"}).out,
                testing::ContainsRegex("\n02:57:00:00:00:01 +ra0 +till-1 +192.0.2.7 +ax +-52 "
                                       "+286\n02:57:00:00:00:02 +ra0 +- "));
    EXPECT_THAT(vexactl({"scan", "ra0"}).out,
                testing::ContainsRegex("\n02:33:00:00:00:01 +Kiosk +1 +40 +-61 +[^ ]* on +-\n02:33:00:00:00:02 "));
    const json_document radio = json_of(vexactl({"radio", "ra0", "--json"}).out);
    EXPECT_EQ(json_integer_value(json_object_get(radio.get(), "busy")), 31);
    EXPECT_EQ(json_integer_value(json_object_get(radio.get(), "antenna_gain")), 3);
    const json_document one = json_of(vexactl({"station", "02:57:00:00:00:01", "--json"}).out);
    EXPECT_EQ(member_text(one.get(), "identity"), "anna");
    EXPECT_EQ(json_integer_value(json_object_get(one.get(), "round_trip_ms")), 9);
    EXPECT_THAT(vexactl({"report"}).out, testing::ContainsRegex("Wireless interfaces(.|\n)*Pier(.|\n)* Kiosk "));
    for (const std::string &line : lines_of(vexactl({"station", "02:57:00:00:00:01"}).out))
        EXPECT_LE(line.size(), 80u) << line;
    EXPECT_THAT(vexactl({"channel", "5180"}).out, testing::ContainsRegex("5 GHz(.|\n)*5210"));
    const std::vector<std::pair<int, std::vector<std::string>>> refused = {
        {1, {"radio", "lo"}},
        {1, {"stations", "ra9"}},
        {1, {"station", "02:00:00:00:00:09"}},
        {2, {"station", "02:57:00:00:00:01:"}},
        {1, {"scan", "lo"}},
        {1, {"channel", "5000"}},
        {2, {"channel", "5180x"}},
    };
    for (const auto &[status, line] : refused)
        EXPECT_EQ(vexactl(line).status, status) << line[0] << " " << line[1];
    EXPECT_EQ(vexactl({"complete", "--", "station", "02:57:00:00:00:"}).out, "02:57:00:00:00:01\n02:57:00:00:00:02\n");
    EXPECT_EQ(vexactl({"complete", "--", "radio", "ra"}).out, "ra0\nra1\nra2\nrai0\nrai1\nrai2\nrai3\n");
    the_device.put("/var/run/vexa-sim/wireless", "radio ra0\nvap ra0 radio=ra0\nfail GET_STATIONS EIO\n");
    for (const char *line : {"stations ra0", "satisfaction"}) {
        const finished silent = shell("$VEXACTL " + std::string{line});
        EXPECT_EQ(silent.status, 3) << line;
        EXPECT_THAT(silent.err, testing::StartsWith("vexactl: no answer about the stations of ra0"));
    }
}
