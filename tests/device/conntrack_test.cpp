// SPDX-License-Identifier: MIT
#include "tests/device/network.h"
#include "tests/support/captured_log.h"
#include "tests/support/failing_memory.h"

namespace {

constexpr char path[] = "/proc/net/nf_conntrack";

// "address*count " of each host, when there is memory for so many things.
std::string ranking(size_t memory = SIZE_MAX)
{
    conntrack_hosts *hosts;
    {
        const failing_memory no_memory{memory, 1};
        hosts = get_top_conntrack_hosts();
    }
    std::string text = hosts ? "" : "(none)";
    for (const conntrack_host *h = hosts ? hosts->first : nullptr; h; h = h->next)
        text += std::string(h->address) + "*" + std::to_string(h->count) + " ";
    free_conntrack_hosts(hosts);
    return text;
}

std::string ranking(const std::string &file)
{
    the_device.put(path, file);
    return ranking();
}

} // namespace

TEST(get_top_conntrack_hosts, counts_the_first_source_and_destination)
{
    const std::string filling(313, 'x'); // with "ipv4 " and a character more a piece
    EXPECT_EQ(ranking("ipv4 2 tcp 6 src=10.0.0.2 dst=10.0.0.1 sport=1 src=10.0.0.9 dst=10.0.0.9 use=2\n"
                      "ipv4 2 tcp 6 src=10.0.0.1 dst=10.0.0.3 sport=1\n"),
              "10.0.0.1*2 10.0.0.2*1 10.0.0.3*1 ")
        << "equal counts stay in the order they were met";
    EXPECT_EQ(ranking("unknown src=1 dst=2 \nipv6 10 src=fe80::1 dst=ff02::2 \n ipv4 src=7 dst=8 \nipv src=1 \n"),
              "fe80::1*1 ff02::2*1 ");
    EXPECT_EQ(ranking("ipv4 src= dst=2\nipv4 dst=4 src=\nipv4 src=5 dst=6"), "2*1 4*1 5*1 ") << "no end, no length";
    EXPECT_EQ(ranking("ipv4 " + filling + "src=1 dst=2 \nipv4 src=3 " + filling + "ipv4 dst=4 \n"), "3*1 ");
    EXPECT_EQ(ranking(std::string("ipv4 src=1 \0dst=2 \nipv4 src=1 dst=2 \n", 36)), "1*2 2*1 ") << "a zero ends a line";
    EXPECT_EQ(ranking(""), "");
}

TEST(get_top_conntrack_hosts, ranks_more_hosts_than_a_table_starts_with)
{
    std::string file, expected = "all*3000 ";
    for (int host = 0; host < 1000; host++)
        for (int flow = host < 500 ? 2 : 4; flow > 0; flow--)
            file += "ipv4 src=" + std::to_string(host) + " dst=all \n";
    for (int host = 500; host < 1500; host++)
        expected += std::to_string(host % 1000) + (host < 1000 ? "*4 " : "*2 ");
    EXPECT_EQ(ranking(file), expected);
}

TEST(get_top_conntrack_hosts, finds_real_flows)
{
    const finished filter = run_program({"nft", "add table inet t; add chain inet t out { type filter hook output "
                                                "priority -300; }; add rule inet t out meta l4proto != udp notrack; "
                                                "add rule inet t out ct state new accept"}); // no IGMP of the kernel's
    if (filter.status != 0)
        GTEST_SKIP() << "no connection tracking: " << filter.err;
    for (int flow = 0; flow < 6; flow++) {
        const int sock = socket(AF_INET, SOCK_DGRAM | SOCK_CLOEXEC, 0);
        const char *host = flow < 2 ? "192.0.2.50" : "192.0.2.51";
        const sockaddr_in to{AF_INET, htons(uint16_t(9000 + flow)), {inet_addr(host)}, {}};
        EXPECT_EQ(sendto(sock, "x", 1, 0, reinterpret_cast<const sockaddr *>(&to), sizeof to), 1);
        close(sock);
    }
    if (!the_device.exists(path))
        GTEST_SKIP() << "the kernel has no " << path;
    EXPECT_EQ(ranking(), "192.0.2.20*6 192.0.2.51*4 192.0.2.50*2 ");
}

// Head, room for hosts, table, buckets: without memory for its buckets the table ends the process, anything else is
// left out.
TEST(get_top_conntrack_hosts, runs_out_of_memory_as_described)
{
    the_device.put(path, "ipv4 src=1 dst=2 \n");
    const captured_log log;
    EXPECT_EQ(ranking(0), "(none)");
    EXPECT_EQ(ranking(1), "2*1 ");
    EXPECT_EQ(std::ranges::count(log.text(), '\n'), 2);
    for (const size_t after : {size_t{2}, size_t{3}})
        EXPECT_EXIT(ranking(after), testing::ExitedWithCode(255), "");
}
