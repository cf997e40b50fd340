// SPDX-License-Identifier: MIT
#include "tests/support/device.h"

TEST(fill_services, wants_both_keys_enabled)
{
    const struct {
        const char *why;
        std::string file;
        std::array<int, 5> flags;
    } rows[] = {
        {"all of them",
         "dhcpc.status=enabled\ndhcpc.1.status=enabled\ndhcpd.status=enabled\ndhcpd.1.status=enabled\n"
         "ppp.status=enabled\nppp.1.status=enabled\niptables.status=enabled\niptables.50.status=enabled\n"
         "ebtables.status=enabled\nebtables.50.status=enabled",
         {1, 1, 1, 1, 1}},
        {"the general key alone", "dhcpc.status=enabled\nebtables.1.status=enabled\nebtables.status=enabled\n", {}},
        {"the particular key alone", "dhcpc.1.status=enabled\n", {}},
        {"other words", "ppp.status=enabled\nppp.1.status=Enabled\ndhcpd.status=1\ndhcpd.1.status=1\n", {}},
        {"blanks around", " \tppp.status \x01=\xff enabled \r\nppp.1.status = enabled\n", {0, 0, 1, 0, 0}},
        {"comments and empty lines", "#ppp.status=enabled\n\nppp.1.status=enabled\nppp.status=enabled=\n", {}},
        {"a line of more than a piece",
         "x=" + std::string(1021, 'x') + "ppp.status=enabled\nppp.1.status=enabled\n",
         {0, 0, 1, 0, 0}},
    };
    for (const auto &row : rows) {
        SCOPED_TRACE(row.why);
        dev_status st{};
        st.dhcpc = st.dhcpd = st.ppp = st.iptables = st.ebtables = 7;
        the_device.put("/tmp/system.cfg", row.file, 0666);
        EXPECT_EQ(fill_services(&st), 0);
        EXPECT_EQ((std::array{st.dhcpc, st.dhcpd, st.ppp, st.iptables, st.ebtables}), row.flags);
        the_device.put("/tmp/system.cfg", row.file, 0777);
        EXPECT_EQ(fill_services(&st), 0);
        EXPECT_EQ(st.dhcpc + st.dhcpd + st.ppp + st.iptables + st.ebtables, 0) << "mode 0777";
    }
}
