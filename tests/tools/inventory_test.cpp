// SPDX-License-Identifier: MIT
#include "tests/tools/vexactl.h"

#include <unistd.h>

namespace {

void put_process()
{
    the_device.put("/proc/4242/stat", "4242 (guest d) S 1 1 2 3 4 5 6 7 8 9 10 11 12 13 14 15 16 17 18 8192 3 x\n");
    the_device.put("/proc/4242/fd/none", "");
    the_device.remove("/proc/4242/fd/none");
    EXPECT_EQ(symlink("/etc/\033x", "/proc/4242/fd/1"), 0);
    EXPECT_EQ(symlink("socket:[55]", "/proc/4242/fd/2"), 0);
    the_device.put("/proc/net/tcp", "heading\n 0: 0100007F:1F90 00000000:0000 0A 00000000:00000000 00:00000000 "
                                    "00000000     0        0 55 1\n");
}

} // namespace

TEST(ps, shows_processes_and_what_they_hold)
{
    put_process();
    EXPECT_THAT(vexactl({"ps"}).out, testing::ContainsRegex("\n4242 +1 +S +12 +8 +2 +guest d\n"));
    const finished held = vexactl({"ps", "--fds", "--filter", "guest d"});
    EXPECT_THAT(held.out, testing::ContainsRegex("\n4242 +guest d +tcp +8080 > \\* +LISTEN\n"));
    EXPECT_THAT(held.out, testing::ContainsRegex("\n4242 +guest d +file +/etc/\\\\x1bx +-\n"));
    const json_document one = json_of(vexactl({"ps", "--fds", "--filter", "guest d", "--json"}).out);
    const json_t *fds = json_object_get(json_array_get(one.get(), 0), "fds");
    EXPECT_EQ(json_array_size(fds), 2u);
    EXPECT_EQ(vexactl({"ps", "--filter", "guest"}).status, 1);
    EXPECT_THAT(vexactl({"sockets"}).out, testing::ContainsRegex("\n4242 +guest d +tcp +8080 > \\* +LISTEN\n"));
    EXPECT_THAT(vexactl({"report"}).out, testing::ContainsRegex("\n  4242 +1 +S +12 +8 +2 +guest d\n"));
}

TEST(conntrack, shows_as_many_hosts_as_wanted)
{
    the_device.put("/proc/net/nf_conntrack", "ipv4 src=10.0.0.2 dst=10.0.0.1 \nipv4 src=10.0.0.1 dst=10.0.0.3 \n");
    EXPECT_EQ(vexactl({"conntrack", "--top", "2"}).out, "HOST      OCCURS\n10.0.0.1       2\n10.0.0.2       1\n");
    for (const char *wrong : {"0", "-1", "2x", ""})
        EXPECT_EQ(vexactl({"conntrack", "--top", wrong}).status, 2) << wrong;
    the_device.remove("/proc/net/nf_conntrack");
    EXPECT_EQ(vexactl({"conntrack"}).status, 3);
    the_device.put("/proc/meminfo", "MemTotal: 1000 kB\n");
    EXPECT_EQ(json_integer_value(json_object_get(json_of(vexactl({"memory", "--json"}).out).get(), "MemTotal")), 1000);
}

TEST(portals, are_shown_and_asked)
{
    EXPECT_EQ(vexactl({"portals"}).out, "no guest portals\n");
    the_device.put("/var/run/guest/portal/lobby/authorized", "02:00:00:00:00:01,02:00:00:00:00:02\n");
    the_device.put("/var/run/guest/portal/lobby/vlans", "10\n20");
    EXPECT_THAT(vexactl({"portals"}).out,
                testing::ContainsRegex("\nlobby +- +10 20 +02:00:00:00:00:01 02:00:00:00:00:02\n"));
    EXPECT_EQ(vexactl({"portal", "auth", "lobby", "02:00:00:00:00:02"}).status, 0);
    EXPECT_EQ(vexactl({"portal", "auth", "lobby", "02:00:00:00:00:0"}).status, 1);
    EXPECT_THAT(vexactl({"portal", "auth", "cellar", "x"}).err, testing::HasSubstr("no portal 'cellar'"));
}
