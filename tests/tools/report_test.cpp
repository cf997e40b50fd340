// SPDX-License-Identifier: MIT
#include "tests/tools/vexactl.h"

TEST(report, is_one_page_of_what_the_device_answers)
{
    const finished done = shell("LC_ALL=C $VEXACTL report");
    EXPECT_EQ(done.status, 0) << done.err;
    for (const std::string &line : lines_of(done.out))
        EXPECT_LE(line.size(), 80u) << line;
    EXPECT_THAT(done.out, testing::StartsWith("Report of ap-lobby\n"));
    for (const char *line : {"\n  Model +Jay 5 Long Range ", " Firmware +6.6.77.15402",
                             "\n  State +eth +Gateway +192.0.2.1\n", "\n  br0 +\\[x\\] on +yes +192.0.2.20 +[0-9]+ ",
                             "\n  br0 +eth1 +forwarding\n", "\n  ra0 +\\[x\\] on  +802.11ax +11 +17 ",
                             "\n  Harbour Guests +ra1 +\\[x\\] on +ra0 +none +no +guest +br0.20\n",
                             "\n  br0.20 +\\[x\\] on +eth0.20 eth1.20 ra1 rai1 +guests\n", "\n +20  eth0 eth1\n",
                             "\\[ \\] dhcpd +", "\\[x\\] lldp +", "\n  Harbour Staff +rai2 +up +eth0 +- +50000\n"})
        EXPECT_THAT(done.out, testing::ContainsRegex(line));
}

TEST(report, never_shows_a_secret)
{
    std::string all;
    for (const char *format : {"table", "json", "kv"})
        all += vexactl({"report", "--format", format}).out;
    all += vexactl({"report", "--html", "-"}).out;
    EXPECT_THAT(all, testing::HasSubstr("Harbour"));
    size_t secrets = 0;
    for (const std::string &line : lines_of(the_device.text("/tmp/system.cfg"))) {
        const size_t equals = line.find('=');
        for (const char *word : {"psk", "secret", "password", "community", "corvo.key", "key.1.value"})
            if (equals != line.npos && line.substr(0, equals).find(word) != line.npos && line.size() > equals + 4) {
                EXPECT_EQ(all.find(line.substr(equals + 1)), all.npos) << line;
                secrets++;
            }
    }
    EXPECT_GE(secrets, 5u);
}

TEST(report, keeps_its_keys_on_a_device_without_answers)
{
    const json_document full = json_of(vexactl({"report", "--json"}).out);
    the_device.remove("/tmp/system.cfg");
    const finished done = vexactl({"report", "--json"});
    EXPECT_EQ(done.status, 3);
    const json_document bare = json_of(done.out);
    const char *key = nullptr;
    json_t *value = nullptr;
    json_object_foreach(full.get(), key, value)
            EXPECT_EQ(json_typeof(value), json_typeof(json_object_get(bare.get(), key)))
        << key;
    EXPECT_EQ(json_array_size(json_object_get(bare.get(), "radios")), 0u);
    EXPECT_EQ(json_array_size(json_object_get(full.get(), "radios")), 2u);
    EXPECT_THAT(vexactl({"report"}).out, testing::Not(testing::HasSubstr("\nRadios ")));
}
