// SPDX-License-Identifier: MIT
#include "tests/device/broker.h"
#include "tests/tools/vexactl.h"

TEST(power, shows_what_the_bus_tells)
{
    EXPECT_EQ(vexactl({"power", "outlets"}).status, 3);
    const broker bus;
    EXPECT_EQ(shell("LC_ALL=C $VEXACTL power outlets").out, "OUTLET  NAME  RELAY        V  A  W  WH\n"
                                                            "     1  A1    [x] on   121.5  -  -   -\n"
                                                            "     2  -     [ ] off      -  -  -   -\n");
    const json_document supplies = json_of(vexactl({"power", "supplies", "--json"}).out);
    EXPECT_EQ(json_array_size(supplies.get()), 1u);
}

TEST(bus, finds_objects_and_follows_the_connection)
{
    EXPECT_EQ(vexactl({"bus", "find", "power.psu"}).status, 3);
    EXPECT_EQ(vexactl({"bus", "status", "--timeout", "1"}).status, 1);
    const broker bus;
    const json_document found = json_of(vexactl({"bus", "find", "power.psu", "--json"}).out);
    EXPECT_GE(json_integer_value(json_object_get(found.get(), "id")), 1024);
    EXPECT_EQ(vexactl({"bus", "find", "power.none"}).err, "vexactl: no object 'power.none'\n");
    EXPECT_EQ(vexactl({"bus", "status", "--timeout", "1"}).out, "connected\n");
}
