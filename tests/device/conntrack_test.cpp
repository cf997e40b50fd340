// SPDX-License-Identifier: MIT
#include "tests/device/network.h"
#include "tests/support/captured_log.h"
#include "tests/support/failing_memory.h"

namespace {

struct free_hosts {
    void operator()(conntrack_hosts *h) const { free_conntrack_hosts(h); }
};
using unique_hosts = std::unique_ptr<conntrack_hosts, free_hosts>;

std::string text_of(const conntrack_hosts *hosts)
{
    std::string text;
    for (const conntrack_host *h = hosts->first; h; h = h->next)
        text += std::string(h->address) + "*" + std::to_string(h->count) + " ";
    return text;
}

std::string ranking(const std::string &file)
{
    the_device.put("/proc/net/nf_conntrack", file);
    const unique_hosts hosts{get_top_conntrack_hosts()};
    return text_of(hosts.get());
}

} // namespace

TEST(get_top_conntrack_hosts, counts_the_first_source_and_destination)
{
    const std::string filling(313, 'x'); // with "ipv4 " and a character more a piece
    const struct {
        const char *why;
        std::string file, ranking;
    } rows[] = {
        {"equal counts stay in the order they were met",
         "ipv4 2 tcp 6 src=10.0.0.2 dst=10.0.0.1 sport=1 src=10.0.0.9 dst=10.0.0.9 use=2\n"
         "ipv4 2 tcp 6 src=10.0.0.1 dst=10.0.0.3 sport=1\n",
         "10.0.0.1*2 10.0.0.2*1 10.0.0.3*1 "},
        {"other families", "unknown 2 src=1 dst=2 \nipv6 10 src=fe80::1 dst=ff02::2 \n ipv4 src=7 dst=8 \nipv src=1 \n",
         "fe80::1*1 ff02::2*1 "},
        {"values without end or length", "ipv4 src= dst=2\nipv4 dst=4 src=\nipv4 src=5 dst=6", "2*1 4*1 5*1 "},
        {"a line in pieces", "ipv4 " + filling + "src=1 dst=2 \nipv4 src=3 " + filling + "ipv4 dst=4 \n", "3*1 "},
        {"a zero ends a line", std::string("ipv4 src=1 \0dst=2 \nipv4 src=1 dst=2 \n", 36), "1*2 2*1 "},
        {"nothing", "", ""},
    };
    for (const auto &row : rows) {
        SCOPED_TRACE(row.why);
        EXPECT_EQ(ranking(row.file), row.ranking);
    }
}

TEST(get_top_conntrack_hosts, ranks_more_hosts_than_a_table_starts_with)
{
    std::string file, expected;
    for (int round = 0; round < 3; round++)
        for (int host = round * 1000; host < 3000; host++)
            file += "ipv4 src=" + std::to_string(host) + " dst=all \n";
    expected = "all*6000 ";
    for (int round = 2; round >= 0; round--)
        for (int host = round * 1000; host < round * 1000 + 1000; host++)
            expected += std::to_string(host) + "*" + std::to_string(round + 1) + " ";
    EXPECT_EQ(ranking(file), expected);
}

TEST(get_top_conntrack_hosts, finds_real_flows)
{
    const finished filter = run_program({"nft", "add table inet t; add chain inet t out { type filter hook output "
                                                "priority -300; }; add rule inet t out meta l4proto != udp notrack; "
                                                "add rule inet t out ct state new accept"}); // no IGMP of the kernel's
    if (filter.status != 0)
        GTEST_SKIP() << "no connection tracking: " << filter.err;
    for (const auto &[host, flows] : {std::pair{"192.0.2.50", 2}, std::pair{"192.0.2.51", 4}})
        for (int flow = 0; flow < flows; flow++) {
            const int sock = socket(AF_INET, SOCK_DGRAM | SOCK_CLOEXEC, 0);
            sockaddr_in to{};
            to.sin_family = AF_INET;
            to.sin_port = htons(uint16_t(9000 + flow));
            inet_pton(AF_INET, host, &to.sin_addr);
            EXPECT_EQ(sendto(sock, "x", 1, 0, reinterpret_cast<sockaddr *>(&to), sizeof to), 1);
            close(sock);
        }
    const unique_hosts hosts{get_top_conntrack_hosts()};
    if (!hosts)
        GTEST_SKIP() << "the kernel has no /proc/net/nf_conntrack";
    EXPECT_EQ(text_of(hosts.get()), "192.0.2.20*6 192.0.2.51*4 192.0.2.50*2 ");
    EXPECT_EQ(hosts->count, 3u);
}

// Head, room for hosts, table, buckets: without memory for its buckets the table ends the process, anything else is
// left out.
TEST(get_top_conntrack_hosts, runs_out_of_memory_as_described)
{
    const struct {
        size_t after;
        const char *answer; // null: the process ends
    } rows[] = {{0, "(none)"}, {1, "2*1 "}, {2, nullptr}, {3, nullptr}};
    the_device.put("/proc/net/nf_conntrack", "ipv4 src=1 dst=2 \n");
    for (const auto &row : rows) {
        SCOPED_TRACE(row.after);
        const auto ask = [&row] {
            unique_hosts hosts;
            {
                const failing_memory no_memory{row.after, 1};
                hosts.reset(get_top_conntrack_hosts());
            }
            return hosts ? text_of(hosts.get()) : "(none)";
        };
        const captured_log log;
        if (!row.answer)
            EXPECT_EXIT(ask(), testing::ExitedWithCode(255), "");
        else
            EXPECT_EQ(ask(), row.answer);
        EXPECT_TRUE(!row.answer || !log.text().empty());
    }
}
