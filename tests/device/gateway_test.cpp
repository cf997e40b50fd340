// SPDX-License-Identifier: MIT
#include "tests/device/forged_answers.h"
#include "tests/device/network.h"
#include "tests/support/captured_log.h"

#include <linux/rtnetlink.h>

namespace {

std::string gateway()
{
    char text[16] = "none";
    const int result = get_gateway(text, nullptr, sizeof text);
    return result == 1 ? text : std::to_string(result);
}

void add_many_routes()
{
    std::string lines;
    for (int i = 0; i < 1000; i++)
        lines += "route add 10.0." + std::to_string(i / 250) + "." + std::to_string(i % 250) + " via 192.0.2.3\n";
    the_device.put("/tmp/routes", lines);
    ip("-batch /tmp/routes");
}

// A message of the right sequence, or of another.
std::string message(const std::string &like, uint16_t type, uint16_t flags, uint32_t other = 0,
                    const std::string &payload = "")
{
    nlmsghdr header;
    memcpy(&header, like.data(), sizeof header);
    header.nlmsg_len = uint32_t(sizeof header + payload.size());
    header.nlmsg_type = type;
    header.nlmsg_flags = flags;
    header.nlmsg_seq += other;
    return std::string(reinterpret_cast<char *>(&header), sizeof header) + payload;
}

std::string with_byte(std::string bytes, size_t at, int value)
{
    bytes[at] = char(value);
    return bytes;
}

} // namespace

TEST(get_gateway, is_that_of_the_default_route_through_the_bridge)
{
    EXPECT_EQ(gateway(), "192.0.2.1");
    char small[9] = "none";
    uint32_t binary = 0;
    EXPECT_EQ(get_gateway(small, &binary, sizeof small), 1);
    EXPECT_STREQ(small, "") << "never a cut address";
    EXPECT_EQ(binary, inet_addr("192.0.2.1"));

    ip("link add wan type bridge; ip link set wan up; ip addr add 203.0.113.9/24 dev wan");
    ip("route add default via 203.0.113.1 dev wan metric 1; ip route add default via 192.0.2.9 dev br0 metric 2");
    EXPECT_EQ(gateway(), "192.0.2.1") << "the first of the right interface";
    add_many_routes();
    EXPECT_EQ(gateway(), "192.0.2.1") << "from an answer of many datagrams";
    ip("route flush table main; ip addr replace 192.0.2.20/24 dev br0; ip route add 192.0.2.0/24 dev br0");
    ip("route add default via 192.0.2.7 dev br0 table 77; ip route add 128.0.0.0/1 via 192.0.2.7 dev br0");
    EXPECT_EQ(gateway(), "0") << "another table, another destination";
    ip("route add default via 203.0.113.1 dev wan onlink");
    EXPECT_EQ(gateway(), "0") << "another interface";
    ip("link del wan; ip route flush table 77; ip route del 128.0.0.0/1; ip route add default via 192.0.2.1 dev br0");
}

TEST(get_gateway, believes_only_whole_answers_of_the_kernel)
{
    using answers = std::vector<datagram>;
    const auto end = [](const std::string &real) { return datagram{message(real, NLMSG_DONE, NLM_F_MULTI)}; };
    const size_t attribute = sizeof(nlmsghdr) + sizeof(rtmsg);
    const struct {
        const char *why, *result;
        forged_answers::forge forge;
    } rows[] = {
        {"as it is", "192.0.2.1",
         [&](auto &real) {
             return answers{{real}, end(real)};
         }},
        {"less than a header", "-1", [](auto &real) { return answers{{real.substr(0, 15)}}; }},
        {"an empty datagram", "-1", [](auto &) { return answers{{""}}; }},
        {"a message that is cut", "-1", [](auto &real) { return answers{{real.substr(0, 40)}}; }},
        {"a length below a header", "-1", [](auto &real) { return answers{{with_byte(real, 0, 15)}}; }},
        {"a length beyond the datagram", "-1", [](auto &real) { return answers{{with_byte(real, 3, 0x7f)}}; }},
        {"an attribute below its header", "-1", [=](auto &real) { return answers{{with_byte(real, attribute, 3)}}; }},
        {"an attribute beyond the message", "-1",
         [=](auto &real) { return answers{{with_byte(real, attribute + 1, 1)}}; }},
        {"a number of another size", "-1", [=](auto &real) { return answers{{with_byte(real, attribute, 6)}}; }},
        {"a route without its block", "-1",
         [](auto &real) { return answers{{message(real, RTM_NEWROUTE, NLM_F_MULTI, 0, "short")}}; }},
        {"a datagram that the room cut", "-1",
         [](auto &real) {
             return answers{{real, 0, MSG_TRUNC}};
         }},
        {"an interrupted dump", "-1",
         [](auto &real) {
             return answers{{real}, {message(real, NLMSG_DONE, NLM_F_MULTI | NLM_F_DUMP_INTR)}};
         }},
        {"an error at the end", "-1",
         [](auto &real) {
             return answers{{real}, {message(real, NLMSG_DONE, NLM_F_MULTI, 0, "\xff\xff\xff\xff")}};
         }},
        {"an error", "-1", [](auto &real) { return answers{{message(real, NLMSG_ERROR, 0, 0, "\xff\xff\xff\xff")}}; }},
        {"an error without a number", "-1", [](auto &real) { return answers{{message(real, NLMSG_ERROR, 0)}}; }},
        {"an overrun", "-1",
         [](auto &real) {
             return answers{{real}, {message(real, NLMSG_OVERRUN, NLM_F_MULTI)}};
         }},
        {"no answer of more than one message", "0",
         [](auto &real) { return answers{{message(real, RTM_NEWROUTE, 0, 0, std::string(12, '\0'))}}; }},
        {"messages of others between", "192.0.2.1",
         [&](auto &real) {
             return answers{{message(real, NLMSG_DONE, 0), 4711},
                            {message(real, NLMSG_ERROR, 0, 1)},
                            {message(real, NLMSG_NOOP, NLM_F_MULTI)},
                            {real},
                            end(real)};
         }},
    };
    for (const auto &row : rows) {
        const forged_answers forged{row.forge};
        EXPECT_EQ(gateway(), row.result) << row.why;
    }
}

TEST(get_gateway, survives_any_byte_and_any_length)
{
    std::string first;
    const auto end = [&] { return datagram{message(first, NLMSG_DONE, NLM_F_MULTI)}; };
    {
        const forged_answers listening{[&](auto &real) {
            first = first.empty() ? real : first;
            return std::vector<datagram>{{first}, end()};
        }};
        EXPECT_EQ(gateway(), "192.0.2.1");
    }
    std::string bytes;
    const forged_answers forged{[&](auto &real) {
        first = real;
        memcpy(bytes.data() + 8, real.data() + 8, bytes.size() >= 12 ? 4 : 0); // the sequence of this time
        return std::vector<datagram>{{bytes}, end()};
    }};
    const std::string known = first;
    for (size_t length = 0; length < known.size(); length++) {
        bytes = known.substr(0, length);
        EXPECT_THAT(gateway(), testing::AnyOf("-1", "0", "192.0.2.1")) << length;
    }
    for (size_t at = 0; at < known.size(); at++)
        for (const int value : {0x00, 0x01, 0x7f, 0xff}) {
            bytes = with_byte(known, at, value);
            (void)gateway();
        }
}

TEST(get_mac_by_ip, takes_a_complete_neighbour)
{
    const std::string heading = "IP address       HW type     Flags       HW address            Mask     Device\n";
    the_device.put("/proc/net/arp", heading + "192.0.2.1 0x1 0x0 02:56:58:00:00:01 * br0\n"
                                              "192.0.2.11 0x1 0x2 02:56:58:00:00:11 * br0\n"
                                              "192.0.2.1 0x1 0x2 02:56:58:00:00:02 * br0\n"
                                              "192.0.2.3 0x1 2 02:56:58:00:00:03 * br0\n"
                                              "192.0.2.4 0x1 0x2 02:56:58:00:00:04 * br0\n");
    char mac[18] = "untouched";
    EXPECT_EQ(get_mac_by_ip("192.0.2.4", mac, sizeof mac), 0) << "behind a line that cannot be read";
    EXPECT_STREQ(mac, "untouched");
    EXPECT_EQ(get_mac_by_ip("192.0.2.1", mac, sizeof mac), 1);
    EXPECT_STREQ(mac, "02:56:58:00:00:02");
    EXPECT_EQ(get_mac_by_ip(nullptr, mac, sizeof mac), 1);
    EXPECT_STREQ(mac, "02:56:58:00:00:11");
    EXPECT_EQ(get_gateway_mac(mac, sizeof mac), 1);
    EXPECT_STREQ(mac, "02:56:58:00:00:02");
    const captured_log log;
    EXPECT_EQ(get_mac_by_ip("192.0.2.1", mac, 9), 1);
    EXPECT_STREQ(mac, "02:56:58");
    EXPECT_EQ(get_mac_by_ip("192.0.2.1", mac, 0), 1);
    EXPECT_EQ(log.text(), "[error] libvexa_status.get_mac_by_ip(): mac truncated\n"
                          "[error] libvexa_status.get_mac_by_ip(): mac truncated\n");
}

TEST(get_gateway_mac, follows_the_kernels_tables)
{
    char mac[18] = "none";
    ip("neigh flush dev br0");
    EXPECT_EQ(get_gateway_mac(mac, sizeof mac), 0);
    ip("neigh replace 192.0.2.1 lladdr 02:56:58:00:00:fe dev br0 nud reachable");
    EXPECT_EQ(get_gateway_mac(mac, sizeof mac), 1);
    EXPECT_STREQ(mac, "02:56:58:00:00:fe");
    ip("neigh del 192.0.2.1 dev br0");
}

TEST(get_default_gw_interface, asks_the_command_ip)
{
    const std::string stand_in = "#!/bin/sh\n", place = "/tmp/bin/ip", path = getenv("PATH");
    ASSERT_EQ(setenv("PATH", ("/tmp/bin:" + path).c_str(), 1), 0);
    const struct {
        const char *why, *script, *ifname;
    } rows[] = {
        {"one default route", "echo 'default via 192.0.2.1 dev eth4 proto dhcp'", "eth4"},
        {"a long name is whole", "echo default via 192.0.2.1 dev fifteen-letters", "fifteen-letters"},
        {"several", "echo default via 192.0.2.1 dev eth4; echo default via 192.0.2.1 dev eth5", "eth4\neth5"},
        {"none", "echo 192.0.2.0/24 dev eth4", "br0"},
        {"an empty word", "echo default via", "br0"},
    };
    for (const auto &row : rows) {
        the_device.put(place, stand_in + row.script, 0755);
        EXPECT_STREQ(get_default_gw_interface(), row.ifname) << row.why;
    }
    setenv("PATH", path.c_str(), 1);
    EXPECT_STREQ(get_default_gw_interface(), "br0") << "the real one";
}
