// SPDX-License-Identifier: MIT
#include "tests/support/program.h"
#include "tests/wireless/lists.h"

#include <net/if.h>

namespace {

// An interface of the kernel's, up or not.
void make_interface(const char *name, const char *state, const char *index = "0")
{
    std::vector<std::string> command = {"ip", "link", "add", "dev", name};
    if (*index != '0')
        command.insert(command.end(), {"index", index});
    command.insert(command.end(), {"type", "bridge"});
    ASSERT_EQ(run_program(command).status, 0);
    ASSERT_EQ(run_program({"ip", "link", "set", name, state}).status, 0);
}

std::string vaps(size_t capacity)
{
    vap_entry entries[VEXA_MAX_VAPS];
    std::string text;
    const int count = enum_vaps(entries, capacity);
    for (int i = 0; i < count; i++) {
        const vap_entry &e = entries[i];
        EXPECT_EQ(e.in_use, 1u);
        EXPECT_EQ(e.ifindex, int(if_nametoindex(e.ifname)));
        text += std::string{e.ifname} + "/" + e.parent + "/" + std::to_string(e.family) + " ";
    }
    return text;
}

} // namespace

TEST(enum_vaps, writes_every_interface_that_is_up_whatever_the_capacity)
{
    const std::string before = vaps(VEXA_MAX_VAPS);
    for (const char *name : {"ra15", "rai9"})
        make_interface(name, "up");
    make_interface("ra14", "down");
    make_interface("ra16", "up");
    make_interface("apcli0", "up");
    EXPECT_EQ(vaps(1).find("apcli0/"), std::string::npos) << "its usage is not known";
    the_device.put("/var/run/vapusage.apcli0", "");
    const std::string now = vaps(1);
    EXPECT_THAT(now, testing::ContainsRegex("^apcli0/ra0/0 (ra[0-9]+/ra0/0 )*ra15/ra0/0 .*rai9/rai0/1 $"));
    EXPECT_EQ(now.size(), before.size() + strlen("apcli0/ra0/0 ra15/ra0/0 rai9/rai0/1 "));
    EXPECT_EQ(enum_vaps(nullptr, 4), 0);
    EXPECT_EQ(vaps(0), "");
}

TEST(vexa_get_ifindex, reads_three_digits)
{
    make_interface("ra7", "up", "12345");
    EXPECT_EQ(vexa_get_ifindex("ra7"), 123);
    EXPECT_EQ(vexa_get_ifindex("lo"), 1);
    EXPECT_EQ(vexa_get_ifindex("none"), 0);
    EXPECT_EQ(vexa_get_ifindex("../net/lo"), 0);
    EXPECT_EQ(vexa_if_is_up("ra7"), 1);
    EXPECT_EQ(vexa_if_is_up("none"), 0);
}

TEST(is_wireless_uplink_or_downlink_vap, reads_the_usage)
{
    const struct {
        const char *why, *file, *content;
        int is;
    } rows[] = {
        {"no file", "other", "uplink\n", 0},
        {"uplink", "ra1", "uplink\n", 1},
        {"downlink", "ra1", "downlink", 1},
        {"user", "ra1", "user\n", 0},
        {"more than the word", "ra1", "uplinks\n", 0},
        {"the path ends after 25 characters", "wireles", "uplink\n", 1},
    };
    for (const auto &row : rows) {
        SCOPED_TRACE(row.why);
        the_device.put(std::string{"/var/run/vapusage."} + row.file, row.content);
        EXPECT_EQ(is_wireless_uplink_or_downlink_vap(row.file[0] == 'w' ? "wireless0" : "ra1"), row.is);
    }
}
