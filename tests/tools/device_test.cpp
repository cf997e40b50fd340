// SPDX-License-Identifier: MIT
#include "tests/tools/vexactl.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

TEST(iface, shows_the_real_interfaces)
{
    const json_document bridge = json_of(vexactl({"iface", "br0", "--json"}).out);
    EXPECT_TRUE(json_is_true(json_object_get(bridge.get(), "up")));
    EXPECT_EQ(member_text(bridge.get(), "address"), "192.0.2.20");
    EXPECT_THAT(vexactl({"iface"}).out, testing::HasSubstr("\neth0 "));
    const finished missing = vexactl({"iface", "nosuch0"});
    EXPECT_EQ(missing.status, 1);
    EXPECT_EQ(missing.err, "vexactl: no interface 'nosuch0'\n");
}

TEST(uplink, tells_the_device_and_how_it_leads_there)
{
    const struct {
        const char *why, *state, *ifname;
        std::string shown_state, shown_device;
        int status;
    } rows[] = {
        {"a cable", "eth\n", "eth1\n", "eth", "eth1", 0},
        {"a wireless link", "wds\n", "ra3\n", "wds", "ra3", 0},
        {"none", "down\n", "eth1\n", "down", "(none)", 1},
    };
    for (const auto &row : rows) {
        SCOPED_TRACE(row.why);
        the_device.put("/var/run/system.uplink", row.state);
        the_device.put("/var/run/system.uplink_ifname", row.ifname);
        const finished done = vexactl({"uplink", "--json"});
        EXPECT_EQ(done.status, row.status);
        EXPECT_EQ(member_text(json_of(done.out).get(), "state"), row.shown_state);
        EXPECT_EQ(member_text(json_of(done.out).get(), "device"), row.shown_device);
    }
}

TEST(lock_status, names_the_holder_without_getting_in_the_way)
{
    the_device.put("/var/run/inform-profile.lock", "");
    EXPECT_THAT(vexactl({"lock", "status"}).out, testing::Not(testing::HasSubstr(" yes ")));
    const int held = open("/var/run/inform-profile.lock", O_RDWR | O_CLOEXEC);
    ASSERT_EQ(flock(held, LOCK_EX | LOCK_NB), 0);
    const json_document locks = json_of(vexactl({"lock", "status", "--json"}).out);
    close(held);
    const json_t *profile = json_array_get(locks.get(), 1);
    EXPECT_TRUE(json_is_false(json_object_get(json_array_get(locks.get(), 0), "held")));
    EXPECT_TRUE(json_is_true(json_object_get(profile, "held")));
    EXPECT_EQ(json_integer_value(json_object_get(profile, "pid")), getpid());
    EXPECT_EQ(member_text(profile, "name"), "vexactl_test");
}

TEST(run, hands_the_words_to_the_script_as_they_are)
{
    EXPECT_EQ(vexactl({"run", "--wait", "hello", "a b", "--", "--wait"}).status, 0);
    EXPECT_EQ(the_device.text("/tmp/syswrapper.log"), "/etc/syswrapper.sh hello a b --wait\n");
    std::vector<std::string> words(50, "x");
    words.insert(words.begin(), "run");
    EXPECT_EQ(vexactl(words).status, 2);
    the_device.remove("/etc/syswrapper.sh");
    const finished done = vexactl({"run", "hello"});
    EXPECT_EQ(done.status, 3);
    EXPECT_THAT(done.err, testing::StartsWith("vexactl: no action script"));
}

TEST(url, shows_the_parts_and_looks_up_the_host)
{
    the_device.put("/etc/hosts", "192.0.2.7 cloud.example\n");
    const json_document parts = json_of(vexactl({"url", "HTTPS://cloud.example:443", "--resolve", "--json"}).out);
    EXPECT_EQ(member_text(parts.get(), "url"), "https://cloud.example/");
    EXPECT_EQ(member_text(parts.get(), "address"), "192.0.2.7:443");
    const finished refused = vexactl({"url", "http://h/a\nb"});
    EXPECT_EQ(refused.status, 1);
    EXPECT_EQ(refused.err, "vexactl: not a usable URL: 'http://h/a\\nb'\n");
}
