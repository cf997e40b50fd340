// SPDX-License-Identifier: MIT
#include "core/owner.h"
#include "tests/device/network.h"
#include "tests/support/captured_log.h"
#include "tests/support/lldp.h"

#include <filesystem>
#include <sys/wait.h>

namespace {

void client_does(const std::string &script)
{
    setenv("PATH", lldp_path, 1);
    the_device.put(lldp_client, "#!/bin/sh\n" + script, 0755);
}

void client_answers(const std::string &text)
{
    the_device.put("/tmp/answer", text);
    client_does("[ \"$*\" = '-f json show neigh' ] && cat /tmp/answer");
}

std::string written(const json_ref &document)
{
    const unique_text text{json_dumps(document.get(), JSON_COMPACT | JSON_ENCODE_ANY)};
    return text ? text.get() : "NULL";
}

std::string neighbours()
{
    return written(json_ref{vexa_get_lldp_json()});
}

ptrdiff_t open_descriptors()
{
    const std::filesystem::directory_iterator all{"/proc/self/fd"};
    return std::distance(begin(all), end(all));
}

struct lldp_report {
    char chassis[20] = "#", oui[7] = "#", uplink[20] = "#";
    uint8_t wireless = 9;
    int result = vexa_get_lldp_report(chassis, sizeof chassis, oui, sizeof oui, &wireless, uplink, sizeof uplink);
};

} // namespace

TEST(vexa_get_lldp_json, reads_what_a_real_neighbour_announces)
{
    const lldp_neighbour real{"Heron 24, firmware 7"};
    if (!real.trouble().empty())
        GTEST_SKIP() << real.trouble();
    json_ref found;
    ASSERT_TRUE(eventually([&] {
        found.reset(vexa_get_lldp_json());
        return json_array_size(found.get()) > 0;
    }));
    EXPECT_EQ(written(found), R"([{"local_port_name":"eth0","is_wired":true,"chassis_id":"02:56:58:ca:00:00",)"
                              R"("chassis_descr":"Heron 24, firmware 7","port_id":"02:56:58:ca:00:00",)"
                              R"("port_descr":"cable0","local_port_idx":1}])");
    const lldp_report report;
    EXPECT_EQ(report.result, 0);
    EXPECT_STREQ(report.chassis, "Heron 24");
    EXPECT_STREQ(report.oui, "025658");
}

TEST(vexa_get_lldp_json, flattens_every_shape_of_answer)
{
    const std::string nobody = R"("chassis_id":"00:00:00:00:00:00")";
    const struct {
        std::string why, answer, expected, log;
    } rows[] = {
        {"no line feed at the end, and the second name wins",
         R"({"lldp":{"interface":{"eth3":{"chassis":{"a":{"id":{"value":"A"},"descr":"d"},"b":{"id":{"value":"B"}}}}}}})",
         R"([{"local_port_name":"eth3","is_wired":true,"chassis_id":"B","chassis_descr":"d","local_port_idx":4}])", ""},
        {"a list; a port without chassis is none",
         R"({"lldp":{"interface":[{"bond1":{"chassis":{}},"eth1":{"port":{}}},7,{"vwire2":{"chassis":{"c":{}}}}]}})",
         "[{\"local_port_name\":\"bond1\",\"is_wired\":true," + nobody + ",\"local_port_idx\":1}," +
             "{\"local_port_name\":\"vwire2\",\"is_wired\":false," + nobody + "}]",
         ""},
        {"a port number of any size", R"({"lldp":{"interface":{"eth99999999999999999999":{"chassis":1}}}})",
         "[{\"local_port_name\":\"eth99999999999999999999\",\"is_wired\":true," + nobody +
             ",\"local_port_idx\":2147483647}]",
         ""},
        {"garbage", "Segmentation fault\n", "[]", "lldp.vexa_get_lldp_json(): wireless/lldp error -5\n"},
        {"the client is not there", "", "[]", "wireless/lldp error -5\n"},
        {"a zero byte ends the text", std::string{"[]\0]", 4}, "[]", "wireless/lldp error -6\n"},
        {"another program's", R"({"interface":{}})", "[]", "wireless/lldp error -6\n"},
        {"nested too deeply", std::string(8000, '['), "[]", "wireless/lldp error -5\n"},
        {"as much as is read", R"({"lldp":{"interface":{}}})" + std::string(16383 - 25, ' '), "[]", ""},
        {"one more", std::string(16382, ' ') + "{}", "[]", "wireless/lldp error -5\n"},
        {"far more", std::string(300'000, ' '), "[]", "wireless/lldp error -5\n"},
    };
    for (const auto &row : rows) {
        SCOPED_TRACE(row.why);
        client_answers(row.answer);
        if (row.answer.empty())
            client_does("exit 127");
        const captured_log log;
        EXPECT_EQ(neighbours(), row.expected);
        EXPECT_TRUE(log.text().ends_with(row.log) && log.text().empty() == row.log.empty()) << log.text();
    }
}

TEST(vexa_get_lldp_json, survives_any_type_in_any_place)
{
    constexpr char whole[] =
        R"({"lldp":{"interface":[{"eth0":{"chassis":{"s":{"id":{"value":"1:2:3:4:5:6"},"descr":"x,y"}},)"
        R"("port":{"id":{"value":"p"},"descr":"q"}}}]}})";
    const char *const others[] = {"null", "true", "-7", "1.5", "\"t\"", "[]", "[[{}]]", "{}", R"({"id":{"id":[]}})"};
    const std::string text = whole;
    size_t tried = 0;
    for (size_t at = 0; at < text.size(); at++) {
        // every value, from the character before it to its end
        if (std::string{":["}.find(text[at]) == std::string::npos || (text[at] == ':' && text[at - 1] != '"'))
            continue;
        json_error_t end;
        const json_ref value{json_loads(&text[at + 1], JSON_DISABLE_EOF_CHECK | JSON_DECODE_ANY, &end)};
        ASSERT_TRUE(value) << &text[at + 1];
        for (const char *other : others) {
            client_answers(text.substr(0, at + 1) + other + text.substr(at + 1 + size_t(end.position)));
            const json_ref found{vexa_get_lldp_json()};
            ASSERT_TRUE(json_is_array(found.get()));
            for (const char *key : {"chassis_id", "chassis_descr", "port_id", "port_descr"}) {
                const json_t *member = json_object_get(json_array_get(found.get(), 0), key);
                EXPECT_TRUE(!member || json_is_string(member)) << key << " in " << text.substr(0, at) << other;
            }
            tried++;
        }
        EXPECT_EQ(lldp_report{}.result, 0);
    }
    EXPECT_EQ(tried, 13 * std::size(others));
}

TEST(vexa_get_lldp_json, leaves_no_child_and_no_pipe)
{
    const struct {
        const char *script, *expected, *log;
    } rows[] = {
        {"printf '{\"lldp\":{}}'; exit 3", "[]", "No LLDP neighbors found\n"},
        {"printf '{\"lldp\":'; kill -9 $$", "[]", "error -5\n"},
        {"sleep 1000 & wait", "NULL", "info . lldp.vexa_get_lldp_json..: Poll timeout\n"},
        {"for part in '{\"lldp\":' '{}' }; do sleep 1.1; printf $part; done", "[]",
         "error. lldp.vexa_get_lldp_json..: Warning: lldpcli took [34] seconds!\n.info .*No LLDP neighbors found\n"},
        {"yes >&2 & exec yes", "NULL", "Poll timeout\n"},
    };
    const ptrdiff_t descriptors = open_descriptors();
    for (const auto &row : rows) {
        SCOPED_TRACE(row.script);
        client_does(std::string{"exec 2>/dev/null; "} + row.script);
        int held[2];
        ASSERT_EQ(pipe(held), 0); // goes to all that the client starts
        {
            const captured_log log{4};
            EXPECT_EQ(neighbours(), row.expected);
            EXPECT_THAT(log.text(), testing::ContainsRegex(row.log + std::string{"$"}));
        }
        close(held[1]);
        pollfd gone{held[0], POLLIN, 0};
        EXPECT_EQ(poll(&gone, 1, 5000), 1) << "somebody is left";
        close(held[0]);
        EXPECT_EQ(waitpid(-1, nullptr, WNOHANG), -1);
        EXPECT_EQ(open_descriptors(), descriptors);
    }
}

TEST(vexa_get_lldp_json, says_five_times_that_there_is_nobody)
{
    for (int round = 0; round < 2; round++) {
        client_answers(R"({"lldp":{"interface":[]}})");
        EXPECT_EQ(neighbours(), "[]");
        client_answers(R"({"lldp":{}})");
        const captured_log log{4};
        for (int i = 0; i < 7; i++)
            EXPECT_EQ(neighbours(), "[]");
        const std::string text = log.text();
        EXPECT_EQ(std::count(text.begin(), text.end(), '\n'), 5) << text;
    }
}

TEST(vexa_get_lldp_report, tells_the_main_port_from_a_wireless_uplink)
{
    client_answers(R"({"lldp":{"interface":[)"
                   R"({"eth0":{"chassis":{"s":{"id":{"value":"02:AB:cd:4:5:6"},"descr":"Heron, 24 ports"}}}},)"
                   R"({"vwire":{"chassis":{"w":{"id":{"value":"x"},"descr":"Wren of a rather long name, 5"}}}},)"
                   R"({"eth1":{"chassis":{"o":{"id":{"value":"1:2:3:4:5:6"},"descr":"Other"}}}}]}})");
    const struct {
        const char *why, *device, *chassis, *oui, *uplink;
        int wireless, result;
    } rows[] = {
        {"wired", "eth0", "Heron", "02abcd", "", 0, 0},
        {"wireless", "vwire", "Heron", "02abcd", "Wren of a rather lo", 1, 0},
        {"nothing is up", "", "", "", "", 0, -1},
    };
    for (const auto &row : rows) {
        SCOPED_TRACE(row.why);
        the_device.put("/var/run/system.uplink", *row.device ? "eth" : "unknown");
        the_device.put("/var/run/system.uplink_ifname", row.device);
        const lldp_report report;
        EXPECT_EQ(report.result, row.result);
        EXPECT_STREQ(report.chassis, row.chassis);
        EXPECT_STREQ(report.oui, row.oui);
        EXPECT_STREQ(report.uplink, row.uplink);
        EXPECT_EQ(report.wireless, row.wireless);
    }
    char small[7] = "######";
    uint8_t wireless;
    the_device.put("/var/run/system.uplink", "eth");
    the_device.put("/var/run/system.uplink_ifname", "eth0");
    EXPECT_EQ(vexa_get_lldp_report(small, 4, small + 4, 0, &wireless, nullptr, 0), 0);
    EXPECT_EQ(std::string(small, 6), std::string("Her\0##", 6));
}
