// SPDX-License-Identifier: MIT
#include "tests/device/network.h"
#include "tests/support/captured_log.h"

#include <functional>
#include <linux/rtnetlink.h>
#include <sys/syscall.h>

namespace {

std::string gateway()
{
    char text[16] = "none";
    const int result = get_gateway(text, nullptr, sizeof text);
    return result == 1 ? text : std::to_string(result);
}

// What is done to each datagram of the kernel on its way; its size may shrink, its sender and flags change.
using spoiling = std::function<void(std::string &, msghdr &)>;
spoiling spoil;

} // namespace

// In the place of the C library's, for the library under test, too.
extern "C" ssize_t recvmsg(int fd, msghdr *message, int flags)
{
    const ssize_t size = syscall(SYS_recvmsg, fd, message, spoil ? flags | MSG_DONTWAIT : flags);
    if (!spoil || size <= 0)
        return size;
    std::string bytes(static_cast<char *>(message->msg_iov->iov_base), size_t(size));
    spoil(bytes, *message);
    memcpy(message->msg_iov->iov_base, bytes.data(), bytes.size());
    return ssize_t(bytes.size());
}

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
    ip("-V; for i in $(seq 1000); do echo route add 10.1.$((i / 250)).$((i % 250)) via 192.0.2.3; done | ip -batch -");
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
    constexpr size_t attribute = sizeof(nlmsghdr) + sizeof(rtmsg);
    const auto set = [](size_t at, int value) -> spoiling {
        return [=](std::string &bytes, msghdr &) { bytes[std::min(at, bytes.size() - 1)] = char(value); };
    };
    const std::pair<const char *, spoiling> rows[] = {
        {"a length below a header", set(0, 15)},
        {"a length beyond the datagram", set(3, 0x7f)},
        {"an error",
         [](std::string &bytes, msghdr &) {
             bytes[4] = NLMSG_ERROR;
             bytes.replace(sizeof(nlmsghdr), 4, "\xff\xff\xff\xff");
         }},
        {"an overrun", set(4, NLMSG_OVERRUN)},
        {"an interrupted dump", set(6, NLM_F_MULTI | NLM_F_DUMP_INTR)},
        {"the answer to another request", set(offsetof(nlmsghdr, nlmsg_seq), 0x7e)},
        {"an attribute below its header", set(attribute, 3)},
        {"an attribute beyond the message", set(attribute + 1, 1)},
        {"a number of another size", set(attribute, 6)},
        {"a datagram that the room cut", [](std::string &, msghdr &message) { message.msg_flags |= MSG_TRUNC; }},
        {"another sender",
         [](std::string &, msghdr &message) { static_cast<sockaddr_nl *>(message.msg_name)->nl_pid = 77; }},
    };
    for (const auto &[why, how] : rows) {
        spoil = how;
        EXPECT_EQ(gateway(), "-1") << why;
    }
    size_t longest = 0;
    spoil = [&](std::string &bytes, msghdr &) { longest = std::max(longest, bytes.size()); };
    EXPECT_EQ(gateway(), "192.0.2.1");
    for (size_t at = 0; at < longest; at++) {
        spoil = [&](std::string &bytes, msghdr &) { bytes.resize(std::min(at, bytes.size())); };
        EXPECT_THAT(gateway(), testing::AnyOf("-1", "0", "192.0.2.1")) << at;
        for (const int value : {0x00, 0x01, 0x7f, 0xff}) {
            spoil = set(at, value);
            (void)gateway();
        }
    }
    spoil = nullptr;
}

TEST(get_gateway_mac, takes_a_complete_neighbour_of_the_kernels_table)
{
    char mac[18] = "untouched";
    ip("neigh flush dev br0");
    EXPECT_EQ(get_gateway_mac(mac, sizeof mac), 0);
    ip("neigh replace 192.0.2.1 lladdr 02:56:58:00:00:fe dev br0 nud reachable");
    EXPECT_EQ(get_gateway_mac(mac, sizeof mac), 1);
    EXPECT_STREQ(mac, "02:56:58:00:00:fe");
    ip("neigh del 192.0.2.1 dev br0");
    the_device.put("/proc/net/arp", "IP address       HW type     Flags       HW address            Mask     Device\n"
                                    "192.0.2.1 0x1 0x0 02:56:58:00:00:01 * br0\n"
                                    "192.0.2.11 0x1 0x2 02:56:58:00:00:11 * br0\n"
                                    "192.0.2.1 0x1 0x2 02:56:58:00:00:02 * br0\n"
                                    "192.0.2.3 0x1 2 02:56:58:00:00:03 * br0\n"
                                    "192.0.2.4 0x1 0x2 02:56:58:00:00:04 * br0\n");
    EXPECT_EQ(get_mac_by_ip("192.0.2.4", mac, sizeof mac), 0) << "behind a line that cannot be read";
    EXPECT_EQ(get_mac_by_ip(nullptr, mac, sizeof mac), 1);
    EXPECT_STREQ(mac, "02:56:58:00:00:11");
    EXPECT_EQ(get_gateway_mac(mac, sizeof mac), 1);
    EXPECT_STREQ(mac, "02:56:58:00:00:02");
    const captured_log log;
    EXPECT_EQ(get_mac_by_ip("192.0.2.1", mac, 0) + get_mac_by_ip("192.0.2.1", mac, 9), 2);
    EXPECT_STREQ(mac, "02:56:58");
    EXPECT_EQ(log.text(), "[error] libvexa_status.get_mac_by_ip(): mac truncated\n"
                          "[error] libvexa_status.get_mac_by_ip(): mac truncated\n");
}
