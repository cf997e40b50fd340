// SPDX-License-Identifier: MIT
#include "tests/device/network.h"
#include "tests/support/lldp.h"
#include "tests/tools/vexactl.h"

TEST(lldp, shows_what_the_device_is_plugged_into)
{
    EXPECT_THAT(vexactl({"lldp"}).out, testing::AllOf(testing::HasSubstr("Heron 24 PoE\n"),
                                                      testing::HasSubstr("\n  apclii0  02:56:58:00:90:00")));
    EXPECT_THAT(shell("LC_ALL=C $VEXACTL report").out,
                testing::HasSubstr("\n  eth0     02:48:65:72:00:18  Heron 24 PoE"));
    const json_document raw = json_of(vexactl({"lldp", "--raw", "--json"}).out);
    EXPECT_EQ(member_text(json_array_get(raw.get(), 0), "port_descr"), "Lobby ceiling");
    the_device.put(lldp_client, "#!/bin/sh\necho '{\"lldp\":{}}'; echo wrong >&2", 0755);
    const finished none = vexactl({"lldp"});
    EXPECT_EQ(none.status, 1);
    EXPECT_EQ(none.err, "vexactl: no LLDP neighbours\n");
    the_device.put(lldp_client, "#!/bin/sh\nexec sleep 1000", 0755);
    EXPECT_EQ(vexactl({"lldp", "--raw"}).status, 3);

    const lldp_neighbour real{"Heron 48, of iron"};
    if (!real.trouble().empty())
        GTEST_SKIP() << real.trouble();
    EXPECT_TRUE(eventually([] { return vexactl({"lldp"}).status == 0; }));
    EXPECT_THAT(vexactl({"report", "--json"}).out, testing::HasSubstr("Heron 48, of iron"));
    EXPECT_THAT(vexactl({"lldp"}).out, testing::ContainsRegex("Main port +Heron 48\n +Vendor +025658\n"));
}
