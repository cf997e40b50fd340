// SPDX-License-Identifier: MIT
#include "tests/device/network.h"
#include "tests/support/captured_log.h"

#include <set>

namespace {

using marks = std::multiset<int>; // which the records carry where no one looks

std::string last_name;

void visit(void *arg, const uint8_t *record, const char *name)
{
    static_cast<marks *>(arg)->insert(record[23]);
    last_name = name;
}

std::string record(int mark, int port)
{
    std::string bytes(24, '\0');
    bytes[6] = char(port);
    bytes[23] = char(mark);
    return bytes;
}

void put_port(const std::string &bridge, const std::string &port, const std::string &number)
{
    the_device.put("/sys/class/net/" + bridge + "/brif/" + port + "/port_no", number);
}

marks foreach (const char *prefix, std::vector<const char *> exclude)
{
    marks seen;
    exclude.push_back(nullptr);
    EXPECT_EQ(fdb_foreach(prefix, exclude.data(), visit, &seen), 0);
    return seen;
}

} // namespace

TEST(fdb_foreach, visits_the_bridges_and_ports_that_are_meant)
{
    for (const auto &[bridge, base] : {std::pair{"br7", 0}, {"br7.10", 100}, {"br70", 200}}) {
        put_port(bridge, "p1", "0x1\n");
        put_port(bridge, "p2", "2\n");
        put_port(bridge, "p2.5", "0x5\n");
        std::string table;
        for (const int port : {1, 2, 3, 5})
            table += record(base + port, port);
        the_device.put(std::string("/sys/class/net/") + bridge + "/brforward", table + "cut");
    }
    EXPECT_EQ(foreach ("br7", {}), (marks{1, 2, 5, 101, 102, 105}));
    EXPECT_EQ(foreach ("br7.10", {}), (marks{101, 102, 105}));
    EXPECT_EQ(foreach ("br", {}), marks{});
    EXPECT_EQ(foreach ("br7", {"p9", "p2"}), (marks{1, 101}));
    EXPECT_EQ(foreach ("br7", {"p2.5", "p"}), (marks{1, 2, 101, 102}));
    EXPECT_THAT(last_name, testing::MatchesRegex("p1|p2|p2.5"));
    marks all;
    EXPECT_EQ(fdb_foreach(nullptr, nullptr, visit, &all), 0);
    EXPECT_GE(all.size(), 9U) << "without a prefix every bridge";
}

TEST(fdb_foreach, counts_sixteen_ports_and_says_so_once)
{
    std::string table;
    for (int port = 1; port <= 20; port++) {
        put_port("br7", "p" + std::to_string(port), std::to_string(port));
        for (int copy = 0; copy < 50; copy++) // more than is read at a time
            table += record(port, port);
    }
    the_device.put("/sys/class/net/br7/brforward", table);
    put_port("br7.1", "p1", "1");
    const captured_log standard_error;
    const marks seen = foreach ("br7", {});
    EXPECT_EQ(seen.size(), 16U * 50);
    EXPECT_EQ(std::set(seen.begin(), seen.end()).size(), 16U);
    const std::string warning = "_fdb_foreach_on_bridge: WARN: MAX_ETH_PORTS hit!\n";
    const std::string missing = "/sys/class/net/br7.1/brforward: No such file or directory\n";
    EXPECT_THAT(standard_error.text(),
                testing::AnyOf(warning + missing, missing + warning)); // as the kernel lists them
}

TEST(add_ip_neigh_entry, makes_the_kernel_look)
{
    EXPECT_EQ(add_ip_neigh_entry("br0", "192.0.2.77"), 0);
    EXPECT_THAT(the_device.text("/proc/net/arp"), testing::HasSubstr("192.0.2.77 "));
    EXPECT_EQ(add_ip_neigh_entry("br0", "192.0.2"), -1);
    EXPECT_EQ(add_ip_neigh_entry("br9", "192.0.2.77"), -1);
    ip("neigh replace 192.0.2.78 lladdr 02:56:58:00:00:78 dev br0 nud stale");
    EXPECT_EQ(add_ip_neigh_entry("br0", "192.0.2.78"), 0);
    char mac[18];
    EXPECT_EQ(get_mac_by_ip("192.0.2.78", mac, sizeof mac), 1) << "what is known stays";
}
