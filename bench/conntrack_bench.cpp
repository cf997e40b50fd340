// SPDX-License-Identifier: MIT
// The ranking of tracked hosts beside the usual way to write it, beside mawk, and on the kernel's live table beside
// reading that. It runs on the simulated device, whose files it writes.

#include "bench/child_program.h"
#include "bench/conntrack_input.h"
#include "bench/conntrack_peer.h"
#include "bench/promises.h"
#include "sim/simulated_device.h"

#include <arpa/inet.h>
#include <libvexa.h>
#include <malloc.h>
#include <sys/socket.h>

namespace {

constexpr char table[] = "/proc/net/nf_conntrack";

sim::simulated_device the_device;

void ours(benchmark::State &state)
{
    for (auto _ : state)
        free_conntrack_hosts(get_top_conntrack_hosts());
}

void with_stdio(benchmark::State &state)
{
    for (auto _ : state)
        benchmark::DoNotOptimize(rank_with_stdio(table));
}

void reading(benchmark::State &state)
{
    char block[16384];
    for (auto _ : state) {
        const int fd = open(table, O_RDONLY | O_CLOEXEC);
        while (read(fd, block, sizeof block) > 0) {
        }
        close(fd);
    }
}

void track_live_flows()
{
    (void)!system("nft 'add table inet t; add chain inet t out { type filter hook output priority 0; };"
                  " add rule inet t out ct state new accept'");
    for (int flow = 0; flow < 20000; flow++) {
        const int sock = socket(AF_INET, SOCK_DGRAM | SOCK_CLOEXEC, 0);
        sockaddr_in to{};
        to.sin_family = AF_INET;
        to.sin_port = htons(uint16_t(1024 + flow));
        to.sin_addr.s_addr = htonl(0xc0000232U + unsigned(flow % 97)); // 192.0.2.50 and on
        (void)sendto(sock, "x", 1, 0, reinterpret_cast<sockaddr *>(&to), sizeof to);
        close(sock);
    }
}

size_t bytes_of_ranking()
{
    const size_t before = mallinfo2().uordblks;
    conntrack_hosts *hosts = get_top_conntrack_hosts();
    const size_t taken = mallinfo2().uordblks - before;
    printf("%u hosts take %zu bytes\n", hosts ? hosts->count : 0, taken);
    free_conntrack_hosts(hosts);
    return taken;
}

// The benchmarks of one table run together, since they all read the same file.
timings measure(int argc, char **argv, const std::string &suffix, void (*add)(const std::string &))
{
    benchmark::ClearRegisteredBenchmarks();
    add("_" + suffix);
    return run_and_report(argc, argv);
}

} // namespace

int main(int argc, char **argv)
{
    static constexpr const char *our_program[] = {VEXA_CONNTRACK_LISTING, nullptr};
    static constexpr const char *mawk[] = {
        "mawk", "{ n[substr($7, 5)]++; n[substr($8, 5)]++ } END { for (h in n) print n[h], h }", table, nullptr};
    the_device.enter({.device = VEXA_DEVICES "/access-point", .reachable = {VEXA_BUILD}});
    timings all;
    for (const auto &[suffix, lines] : {std::pair{"10k", 10'000}, {"100k", 100'000}, {"1M", 1'000'000}}) {
        the_device.put(table, conntrack_lines(size_t(lines)));
        bytes_of_ranking();
        all.merge(measure(argc, argv, suffix, [](const std::string &s) {
            benchmark::RegisterBenchmark(("ranking" + s).c_str(), ours);
            benchmark::RegisterBenchmark(("stdio" + s).c_str(), with_stdio);
            benchmark::RegisterBenchmark(("program" + s).c_str(), run_program, our_program)->UseManualTime();
            benchmark::RegisterBenchmark(("mawk" + s).c_str(), run_program, mawk)->UseManualTime();
        }));
    }
    the_device.restore();
    track_live_flows();
    all.merge(measure(argc, argv, "live", [](const std::string &s) {
        benchmark::RegisterBenchmark(("ranking" + s).c_str(), ours);
        benchmark::RegisterBenchmark(("reading" + s).c_str(), reading);
    }));
    std::vector<promise> promises;
    for (const std::string s : {"_10k", "_100k", "_1M"}) {
        promises.push_back({"ranking, to fgets and strstr" + s, "ranking" + s, {"stdio" + s}, 0.6});
        promises.push_back({"a program, to mawk" + s, "program" + s, {"mawk" + s}, 1 / 2.5});
    }
    promises.push_back({"linear: a hundred times the lines", "ranking_1M", {"ranking_10k"}, 130});
    promises.push_back({"the live table, to reading it", "ranking_live", {"reading_live"}, 1.3});
    print_verdicts(all, promises);
    return 0;
}
