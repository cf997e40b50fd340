// SPDX-License-Identifier: MIT
#include "tests/support/device.h"

namespace {

using flags = std::array<int, 5>;

flags services(const std::string &file, mode_t mode = 0666)
{
    dev_status st{};
    the_device.put("/tmp/system.cfg", file, mode);
    EXPECT_EQ(fill_services(&st), 0);
    return {st.dhcpc, st.dhcpd, st.ppp, st.iptables, st.ebtables};
}

} // namespace

TEST(fill_services, wants_both_keys_enabled)
{
    const std::string all =
        "dhcpc.status=enabled\ndhcpc.1.status=enabled\ndhcpd.status=enabled\ndhcpd.1.status=enabled\n"
        "ppp.status=enabled\nppp.1.status=enabled\niptables.status=enabled\niptables.50.status=enabled\n"
        "ebtables.status=enabled\nebtables.50.status=enabled";
    EXPECT_EQ(services(all), (flags{1, 1, 1, 1, 1}));
    EXPECT_EQ(services(all, 0777), flags{}) << "not of that mode";
    EXPECT_EQ(services("dhcpc.status=enabled\ndhcpd.1.status=enabled\nebtables.1.status=enabled\n"), flags{});
    EXPECT_EQ(services("ppp.status=enabled\nppp.1.status=Enabled\ndhcpd.status=1\ndhcpd.1.status=1\n"), flags{});
    EXPECT_EQ(services(" \tppp.status \x01=\xff enabled \r\nppp.1.status = enabled\n"), (flags{0, 0, 1}));
    EXPECT_EQ(services("#ppp.status=enabled\n\nppp.1.status=enabled\nppp.status=enabled=\n"), flags{});
    EXPECT_EQ(services("x=" + std::string(1021, 'x') + "ppp.status=enabled\nppp.1.status=enabled\n"), (flags{0, 0, 1}))
        << "a line of more than a piece";
}
