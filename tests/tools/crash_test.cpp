// SPDX-License-Identifier: MIT
#include "tests/support/cloud.h"
#include "tests/tools/vexactl.h"

TEST(crash, reaches_the_cloud)
{
    const cloud services;
    const finished done = shell(EXAMPLES "/cloud_report.sh \"$VEXACTL\"");
    EXPECT_EQ(done.status, 0) << done.err;
    EXPECT_THAT(done.out, testing::ContainsRegex("\naccepted\n(.*\n)*reported\n(.*\n)*Reported +[^ ]+ on\n"));
    EXPECT_EQ(services.requests(), 2u);
    EXPECT_EQ(vexactl({"crash", "send", "--clear"}).out, "reported\n") << "but once";
    EXPECT_EQ(services.requests(), 2u);
    EXPECT_EQ(vexactl({"crash", "send"}).status, 1) << "no crash";
}

TEST(crash, shows_the_isolation_logs_and_lets_them_be_finished)
{
    the_device.remove("/var/run/ntp.ready");
    const std::string name = "with blank; \xff";
    the_device.put("/etc/persistent/isolation_logs/" + name, "log");
    the_device.put("/etc/persistent/isolation_logs/old", "log");
    the_device.put("/etc/persistent/isolation_logs_sent/old", "");
    const json_document status = json_of(vexactl({"crash", "status", "--json"}).out);
    EXPECT_EQ(json_integer_value(json_object_get(status.get(), "logs")), 1);
    EXPECT_TRUE(json_is_false(json_object_get(status.get(), "clock")));
    EXPECT_EQ(lines_of(vexactl({"crash", "logs", "--format", "kv"}).out),
              (std::vector<std::string>{
                  "name='old' bytes='3' posted='false' attempts='0' finished='true'",
                  "name=$'with blank; \\377' bytes='3' posted='false' attempts='0' finished='false'",
              }));
    EXPECT_FALSE(the_device.exists("/etc/persistent/isolation_logs/meta")) << "looking changes nothing";
    EXPECT_EQ(member_text(json_of(vexactl({"crash", "next", "--json"}).out).get(), "file_data"), "bG9n");
    EXPECT_EQ(vexactl({"crash", "finish", name}).status, 0);
    EXPECT_EQ(vexactl({"crash", "finish", name}).status, 1);
    EXPECT_EQ(vexactl({"crash", "next"}).status, 1);
    EXPECT_EQ(vexactl({"crash", "binary", "hostapd", "/dev/zero"}).status, 3) << "without end";
    EXPECT_EQ(vexactl({"crash", "binary", "hostapd"}).status, 3) << "the gate is closed";
}

TEST(crash, refuses_what_cannot_be_meant)
{
    const struct {
        std::vector<std::string> arguments;
        const char *complaint;
    } rows[] = {
        {{"crash", "binary", "x", "--pid", "99999999999"}, "take numbers"},
        {{"crash", "binary", "x", "--kind", "4"}, "--kind"},
        {{"crash", "logs", "--uplink", "x"}, "--uplink goes with --send"},
        {{"trace", "send", "a\xff", "b", "{}"}, "NAMESPACE and TYPE must be UTF-8"},
        {{"trace", "send", "a", "b", "{"}, "is no JSON: "},
        {{"trace", "send", "a", "b", "[]"}, "the payload is no JSON object"},
        {{"trace", "send", "a", "b", "{}", "--meta", "1"}, "--meta is no JSON object"},
    };
    for (const auto &row : rows) {
        SCOPED_TRACE(row.complaint);
        const finished done = vexactl(row.arguments);
        EXPECT_EQ(done.status, 2);
        EXPECT_THAT(done.err, testing::HasSubstr(row.complaint));
    }
    the_device.put("/var/run/system.analytics.mode", "0\n");
    EXPECT_EQ(vexactl({"trace", "send", "a", "b", "{}"}).status, 1);
}
