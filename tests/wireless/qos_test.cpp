// SPDX-License-Identifier: MIT
#include "sim/driver/driver.h"
#include "tests/support/captured_log.h"
#include "tests/support/device.h"

namespace {

constexpr char switched_on[] = "qos.status=enabled\nqos.mode=1\n";
constexpr char lobby[] = "qos.vap.1.id=10\nqos.vap.1.devname=ra1\n"; // with nothing said of its speeds
constexpr char lobby_limits[] = "qos.vap.1.dwnlink.maxspeed=10000\nqos.vap.1.dwnlink.minspeed=1000\n"
                                "qos.vap.1.uplink.1.devname=eth0\nqos.vap.1.uplink.1.maxspeed=5000\n"
                                "qos.vap.1.uplink.1.minspeed=500\n";

// The table of a configuration, in the place of the one before; the script notes what it is told.
void build(const std::string &configuration, const char *status = "0")
{
    the_device.put("/bin/qos_control.sh", std::string{"#!/bin/sh\necho \"$*\" >>/tmp/rules\nexit "} + status, 0755);
    the_device.put("/tmp/rules", "");
    the_device.put("/tmp/system.cfg", switched_on + configuration + "\n");
    free_qos_info();
    ASSERT_EQ(init_qos_info(), 0);
}

std::string rules()
{
    std::string told = the_device.text("/tmp/rules");
    the_device.put("/tmp/rules", "");
    return told;
}

std::string entry(const std::string &vap)
{
    const qos_vap_info *e = get_qos_vap_info(vap.c_str());
    if (!e)
        return "none";
    const auto speeds = [](int64_t most, int64_t least) { return std::to_string(most) + "/" + std::to_string(least); };
    std::string text = std::to_string(e->id) + " " + e->devname + " " + std::to_string(e->devspeed) + " " +
                       speeds(e->dl_maxspeed, e->dl_minspeed) + " " + e->usage;
    for (size_t i = 0; i < VEXA_QOS_UPLINKS && *e->uplink_devname[i]; i++)
        text += std::string{" "} + e->uplink_devname[i] + " " + speeds(e->uplink_maxspeed[i], e->uplink_minspeed[i]);
    return text;
}

} // namespace

TEST(init_qos_info, what_the_file_says_of_a_vap)
{
    const struct {
        const char *why;
        std::string configuration, vap, expected;
    } rows[] = {
        {"all of it", lobby + std::string{lobby_limits} + "qos.if.4.devname=ra1\nqos.if.4.devspeed=286\n", "ra1",
         "10 ra1 286 10000/1000 guest eth0 5000/500"},
        {"defaults", "qos.vap.3.devname=x", "x", "-1 x 100 -1/-1 user"},
        {"what an interface can do is the maximum of what has none",
         lobby +
             std::string{"qos.vap.1.uplink.2.devname=eth0\nqos.vap.1.uplink.1.devname=eth1\n"
                         "qos.if.1.devname=eth0\nqos.if.2.devname=ra1\nqos.if.2.devspeed=300\nqos.if.3.devname=no\n"},
         "ra1", "10 ra1 300 300000/-1 guest eth1 -1/-1 eth0 100000/-1"},
        {"a minimum below the maximum",
         "qos.vap.1.devname=m\nqos.vap.1.dwnlink.maxspeed=8\nqos.vap.1.dwnlink.minspeed=8\nqos.vap.1.uplink.1.devname="
         "u\n"
         "qos.vap.1.uplink.1.maxspeed=8\nqos.vap.1.uplink.1.minspeed=9\nqos.vap.1.uplink.2.devname=v\n"
         "qos.vap.1.uplink.2.maxspeed=0\nqos.vap.1.uplink.2.minspeed=9\n",
         "m", "-1 m 100 8/1 user u 8/1 v 0/9"},
        {"a number too large is none, and no matter to the next",
         "qos.vap.1.id=5\nqos.vap.1.devname=l\nqos.vap.1.dwnlink.maxspeed=99999999999999999999\n"
         "qos.vap.1.dwnlink.minspeed=7\nqos.if.1.devname=l\nqos.if.1.devspeed=9223372036854775807\n",
         "l", "5 l 9223372036854775807 9223372036854775807/7 user"},
        {"uplinks only", "qos.if.1.devname=apclii0\nqos.if.1.type=uplink\n", "apclii0", "0 apclii0 0 0/0 uplink"},
        {"but not wired ones", "qos.if.1.devname=eth4\nqos.if.1.type=uplink\n", "eth4", "none"},
        {"a name that leads elsewhere has no file", "qos.vap.1.devname=../system.up", "../system.up",
         "-1 ../system.up 100 -1/-1 user"},
    };
    for (const auto &row : rows) {
        SCOPED_TRACE(row.why);
        the_device.put("/var/run/vapusage.ra1", "guest\n");
        the_device.put("/var/run/vapusage.apclii0", "uplink\n");
        the_device.put("/var/run/vapusage.../system.up", "wrong\n");
        build(row.configuration);
        EXPECT_EQ(entry(row.vap), row.expected);
        EXPECT_EQ(entry(""), "none");
        EXPECT_EQ(init_qos_info(), 0) << "keeps the table";
    }
    free_qos_info();
    const std::pair<const char *, int> without[] = {
        {"qos.status=off\nqos.mode=1\n", 0}, {"qos.status=on\nqos.mode=0\n", 0}, {"", -1}};
    for (const auto &[configuration, result] : without) {
        the_device.put("/tmp/system.cfg", configuration + std::string{*configuration ? lobby : ""});
        EXPECT_EQ(init_qos_info(), result);
        EXPECT_EQ(entry("ra1"), "none");
        EXPECT_EQ(add_sta_qosrule("ra1", 1) + add_all_sta_qosrates() + update_sta_qosrate("2:0:0:0:0:1", 1, 2, 3, 4),
                  -3);
    }
}

TEST(init_qos_info, leaves_out_what_there_is_no_room_for)
{
    for (const int count : {31, 32, 40}) {
        std::string all = "qos.if.1.devname=apcli0\nqos.if.1.type=uplink\n";
        for (int i = 1; i <= count; i++)
            all += "qos.vap." + std::to_string(i) + ".devname=x" + std::to_string(i) + "\n";
        for (int i = 1; i <= 8; i++)
            all += "qos.vap.1.uplink." + std::to_string(i) + ".devname=up" + std::to_string(i) + "\n";
        const captured_log log{1};
        build(all);
        EXPECT_EQ(entry("x1"), "-1 x1 100 -1/-1 user up1 -1/-1 up2 -1/-1 up3 -1/-1 up4 -1/-1 up5 -1/-1 up6 -1/-1");
        EXPECT_EQ(entry("x32") == "none", count < 32);
        EXPECT_EQ(entry("x33"), "none");
        EXPECT_EQ(entry("apcli0") == "none", count > 31);
        const std::string text = log.text();
        EXPECT_EQ(std::count(text.begin(), text.end(), '\n'), 2 + count + 1 - std::min(count + 1, 32)) << text;
        EXPECT_THAT(text,
                    testing::HasSubstr("[error] qos.init_qos_info(): more than 6 uplinks of x1, up8 is left out"));
    }
}

TEST(add_sta_qosrule, sets_and_deletes_the_rules_of_a_vap)
{
    const std::string unlimited = "qos.vap.1.uplink.1.devname=eth0\nqos.if.1.devname=ra1\nqos.if.2.devname=eth0\n";
    const std::string uplinks = "qos.vap.1.uplink.1.devname=apcli0\nqos.vap.1.uplink.1.maxspeed=7\n"
                                "qos.vap.1.uplink.2.devname=apclii0\nqos.vap.1.uplink.2.maxspeed=8\n"
                                "qos.if.1.devname=apcli0\nqos.if.1.type=uplink\n"
                                "qos.if.2.devname=apclii0\nqos.if.2.type=uplink\n";
    const struct {
        const char *why;
        std::string configuration, added, removed;
    } rows[] = {
        {"limits", lobby_limits, "replace-sta ra1 10 7 1000kbit 10000kbit\nreplace-sta eth0 10 7 500kbit 5000kbit\n",
         "del-sta ra1 10 7 0kbit 0kbit\ndel-sta eth0 10 7 0kbit 0kbit\n"},
        {"none", "qos.vap.1.uplink.3.devname=eth1\n",
         "replace-sta ra1 10 7 64kbit 1000000kbit\nreplace-sta eth1 10 7 64kbit 1000000kbit\n",
         "del-sta ra1 10 7 0kbit 0kbit\ndel-sta eth1 10 7 0kbit 0kbit\n"},
        {"suppressed", unlimited, "", "del-sta ra1 10 7 0kbit 0kbit\ndel-sta eth0 10 7 0kbit 0kbit\n"},
        {"unlimited on the way down only", unlimited + "qos.vap.1.uplink.1.maxspeed=99999\n",
         "replace-sta ra1 10 7 64kbit 100000kbit\nreplace-sta eth0 10 7 64kbit 99999kbit\n",
         "del-sta ra1 10 7 0kbit 0kbit\ndel-sta eth0 10 7 0kbit 0kbit\n"},
        {"one wireless uplink of two", uplinks,
         "replace-sta ra1 10 7 64kbit 1000000kbit\nreplace-sta apclii0 10 7 64kbit 8kbit\n",
         "del-sta ra1 10 7 0kbit 0kbit\ndel-sta apclii0 10 7 0kbit 0kbit\n"},
        {"names for the shell", "qos.vap.1.uplink.1.devname=e;date>/'x&\n",
         "replace-sta ra1 10 7 64kbit 1000000kbit\nreplace-sta e;date>/'x& 10 7 64kbit 1000000kbit\n",
         "del-sta ra1 10 7 0kbit 0kbit\ndel-sta e;date>/'x& 10 7 0kbit 0kbit\n"},
    };
    the_device.put("/var/run/vapusage.apcli0", "uplink");
    the_device.put("/var/run/vapusage.apclii0", "uplink");
    the_device.put("/var/run/system.uplink", "wds");
    the_device.put("/var/run/system.uplink_ifname", "apclii0");
    for (const auto &row : rows) {
        SCOPED_TRACE(row.why);
        build(lobby + row.configuration);
        EXPECT_EQ(add_sta_qosrule("ra1", 7), 0);
        EXPECT_EQ(rules(), row.added);
        EXPECT_EQ(remove_sta_qosrule("ra1", 7), 0);
        EXPECT_EQ(rules(), row.removed);
    }
    EXPECT_EQ(add_sta_qosrule("ra2", 7) + remove_sta_qosrule("ra2", 7), -2);

    build(std::string{lobby} + "qos.vap.1.uplink.1.devname=a b\n", "5");
    const captured_log log{2};
    EXPECT_EQ(add_sta_qosrule("ra1", 0xffffffff), 0);
    EXPECT_EQ(log.text(),
              "[warn ] qos.qos_sta_control(): (5) cmd failed /bin/qos_control.sh replace-sta ra1 10 -1 64kbit "
              "1000000kbit\n[warn ] qos.qos_sta_control(): (5) cmd failed /bin/qos_control.sh replace-sta "
              "'a b' 10 -1 64kbit 1000000kbit\n");
}

namespace {

// Two VAPs and a mesh link; who is connected to them is said by each test.
void bring_up(const std::string &stations)
{
    the_device.put("/var/run/vexa-sim/wireless",
                   "radio ra0\nradio rai0\nvap ra0 radio=ra0\nvap rai0 radio=rai0\n"
                   "vap apclii0 radio=rai0 usage=uplink mode=managed\nstation 02:57:00:00:00:04 vap=apclii0\n" +
                       stations);
}

// The second one has no limits.
constexpr char radios[] =
    "qos.vap.1.id=10\nqos.vap.1.devname=ra0\nqos.vap.1.dwnlink.maxspeed=350000\n"
    "qos.vap.1.uplink.1.devname=eth0\nqos.vap.1.uplink.1.maxspeed=5000\n"
    "qos.vap.2.id=11\nqos.vap.2.devname=rai0\nqos.vap.2.uplink.1.devname=eth0\n"
    "qos.if.1.devname=rai0\nqos.if.1.devspeed=400\n"
    "qos.if.2.devname=eth0\nqos.if.2.devspeed=400\nqos.if.3.devname=apclii0\nqos.if.3.type=uplink\n";

// What the driver was told last.
std::string told()
{
    const std::string all = sim::driver::log();
    const size_t last = all.rfind("RATELIMIT");
    return last == all.npos ? "" : all.substr(last);
}

} // namespace

TEST(update_sta_qosrate, sets_the_rules_where_the_station_is_and_tells_the_driver)
{
    bring_up("station 02:57:00:00:00:02 vap=ra0 associd=17\nstation 02:57:00:00:00:03 vap=rai0 associd=4\n");
    build(radios);
    const struct {
        const char *why, *mac;
        int64_t ul_min, ul_max, dl_min, dl_max;
        std::string expected, flag;
    } rows[] = {
        {"limits of its own", "02:57:00:00:00:02", 100, 2000, 300, 400000,
         "replace-sta ra0 10 17 300kbit 400000kbit\nreplace-sta eth0 10 17 100kbit 2000kbit\n", "ra0 17 1"},
        {"minimum not below the maximum", "2:57:0:0:0:2", 350000, 350000, 9000, 4000,
         "replace-sta ra0 10 17 1kbit 4000kbit\nreplace-sta eth0 10 17 1kbit 350000kbit\n", "ra0 17 1"},
        {"fast enough", "02:57:00:00:00:02", 1, 350000, 1, INT64_MAX,
         "replace-sta ra0 10 17 1kbit 9223372036854775807kbit\nreplace-sta eth0 10 17 1kbit 350000kbit\n", "ra0 17 0"},
        {"none up, all down", "02:57:00:00:00:02", 5, 0, 100000, -1,
         "replace-sta ra0 10 17 1kbit 100000kbit\nreplace-sta eth0 10 17 5kbit 0kbit\n", "ra0 17 1"},
        {"unlimited", "02:57:00:00:00:03", 5, 0, 5, -1, "", "rai0 4 0"},
        {"unlimited but for it", "02:57:00:00:00:03", 5, -1, 5, 349999,
         "replace-sta rai0 11 4 5kbit 349999kbit\nreplace-sta eth0 11 4 5kbit 400000kbit\n", "rai0 4 1"},
    };
    for (const auto &row : rows) {
        SCOPED_TRACE(row.why);
        EXPECT_EQ(update_sta_qosrate(row.mac, row.ul_min, row.ul_max, row.dl_min, row.dl_max), 0);
        EXPECT_EQ(rules(), row.expected);
        EXPECT_EQ(told(), "RATELIMIT " + row.flag + "\n");
    }
    for (const char *nobody : {"02:57:00:00:00:04", "02:57:00:00:00:99", "02:57:00:00:00", ""})
        EXPECT_EQ(update_sta_qosrate(nobody, 1, 2, 1, 2), -1) << nobody;
    EXPECT_EQ(rules(), "");
}

TEST(add_all_sta_qosrates, gives_every_station_its_rules)
{
    build(radios);
    const std::string second = "replace-sta ra0 10 2 64kbit 350000kbit\nreplace-sta eth0 10 2 64kbit 5000kbit\n";
    bring_up("station 02:57:00:00:00:01 vap=ra0 associd=0\nstation 02:57:00:00:00:02 vap=ra0 associd=2\n"
             "station 02:57:00:00:00:03 vap=rai0 associd=1\n");
    EXPECT_EQ(add_all_sta_qosrates(), 0);
    EXPECT_EQ(rules(), second);
    EXPECT_EQ(told(), "RATELIMIT rai0 1 0\n");
    EXPECT_EQ(remove_sta_qosrule("ra0", 9), 0);
    EXPECT_EQ(told(), "RATELIMIT rai0 1 0\n") << "a rule less is no news for the driver";

    the_device.put("/var/run/qos.custom_rates.sh", "echo custom >>/tmp/rules; exit 3");
    rules();
    EXPECT_EQ(add_all_sta_qosrates(), 3);
    EXPECT_EQ(rules(), second + "custom\n");
    the_device.put("/var/run/qos.custom_rates.sh", "kill -9 $$");
    sim::driver::change("fail GET_STATIONS@ra0 EIO\n");
    const captured_log log{1};
    EXPECT_EQ(add_all_sta_qosrates(), 128 + 9);
    EXPECT_EQ(rules(), "");
    EXPECT_THAT(log.text(), testing::HasSubstr("[error] qos.add_all_sta_qosrates(): add_all_sta_qosrates: couldn't "
                                               "retrieve sta list!\n"));
}
