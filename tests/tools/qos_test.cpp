// SPDX-License-Identifier: MIT
#include "tests/tools/vexactl.h"

TEST(qos, shows_sets_and_deletes_limits)
{
    EXPECT_THAT(vexactl({"qos", "show"}).out, testing::ContainsRegex("\nra1 +10 +guest +286 +up +eth0 +500 +5000\n"));
    const struct {
        std::vector<std::string> arguments;
        int status;
        std::string told;
    } rows[] = {
        {{"add", "ra1", "7"},
         0,
         "replace-sta ra1 10 7 1000kbit 10000kbit\n"
         "/bin/qos_control.sh replace-sta eth0 10 7 500kbit 5000kbit\n"},
        {{"remove", "rai1", "9"},
         0,
         "del-sta rai1 11 9 0kbit 0kbit\n/bin/qos_control.sh del-sta eth0 11 9 0kbit 0kbit\n"},
        {{"add", "ra9", "7"}, 1, ""},
        {{"add", "ra1", "-7"}, 2, ""},
        {{"add", "ra1", "7x"}, 2, ""},
        {{"rate", "ae:4e:0c:dd:46:53", "64", "3000", "64", "none"},
         0,
         "replace-sta ra1 10 1 64kbit 286000kbit\n/bin/qos_control.sh replace-sta eth0 10 1 64kbit 3000kbit\n"},
        {{"rate", "02:57:00:00:00:99", "1", "none", "1", "2"}, 1, ""},
        {{"rate", "02:57:00:00:00", "1", "2", "1", "2"}, 2, ""},
        {{"rate", "02:57:00:00:00:01", "1", "2", "1", "all"}, 2, ""},
        {{"rate", "02:57:00:00:00:01", "1", "2", "none", "2"}, 2, ""},
    };
    for (const auto &row : rows) {
        std::vector<std::string> words = row.arguments;
        words.insert(words.begin(), "qos");
        the_device.put("/tmp/qos_control.log", "");
        EXPECT_EQ(vexactl(words).status, row.status) << row.arguments[0] << row.arguments[1];
        EXPECT_EQ(the_device.text("/tmp/qos_control.log"), row.told.empty() ? "" : "/bin/qos_control.sh " + row.told);
    }
    the_device.put("/tmp/system.cfg", "qos.status=disabled\n");
    EXPECT_EQ(vexactl({"qos", "show", "--json"}).out, "[]\n");
    the_device.remove("/tmp/system.cfg");
    EXPECT_EQ(vexactl({"qos", "show"}).status, 3);
}
