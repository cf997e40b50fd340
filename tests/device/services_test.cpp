// SPDX-License-Identifier: MIT
#include "tests/support/device.h"

TEST(fill_services, wants_both_keys_enabled)
{
    using flags = std::array<int, 5>;
    const struct {
        const char *why;
        std::string file;
        flags expected;
    } rows[] = {
        {"all of them",
         "dhcpc.status=enabled\ndhcpc.1.status=enabled\ndhcpd.status=enabled\ndhcpd.1.status=enabled\n"
         "ppp.status=enabled\nppp.1.status=enabled\niptables.status=enabled\niptables.50.status=enabled\n"
         "ebtables.status=enabled\nebtables.50.status=enabled",
         flags{1, 1, 1, 1, 1}},
        {"one of two", "dhcpc.status=enabled\ndhcpd.1.status=enabled\nebtables.1.status=enabled\n", {}},
        {"other words", "ppp.status=enabled\nppp.1.status=Enabled\ndhcpd.status=1\ndhcpd.1.status=1\n", {}},
        {"blanks around", " \tppp.status \x01=\xff enabled \r\nppp.1.status = enabled\n", flags{0, 0, 1}},
        {"comments and empty lines", "#ppp.status=enabled\n\nppp.1.status=enabled\nppp.status=enabled=\n", {}},
        {"a long line", "x=" + std::string(1021, 'x') + "ppp.status=enabled\nppp.1.status=enabled\n", flags{0, 0, 1}},
    };
    dev_status st{};
    for (const auto &row : rows) {
        the_device.put("/tmp/system.cfg", row.file, 0666);
        EXPECT_EQ(fill_services(&st), 0);
        EXPECT_EQ((flags{st.dhcpc, st.dhcpd, st.ppp, st.iptables, st.ebtables}), row.expected) << row.why;
    }
    the_device.put("/tmp/system.cfg", rows[0].file, 0777);
    EXPECT_EQ(fill_services(&st), 0);
    EXPECT_EQ(st.dhcpc + st.dhcpd + st.ppp + st.iptables + st.ebtables, 0) << "mode 0777";
}
