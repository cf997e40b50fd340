// SPDX-License-Identifier: MIT
// Forwarding tables and interface counters beside the calls that they cannot do without. It runs on the simulated
// device, whose files and interfaces it makes.

#include "bench/promises.h"
#include "sim/simulated_device.h"

#include <dirent.h>
#include <fcntl.h>
#include <libvexa.h>
#include <linux/ethtool.h>
#include <linux/sockios.h>
#include <net/if.h>
#include <sys/ioctl.h>
#include <sys/socket.h>
#include <unistd.h>

namespace {

constexpr size_t entries = 10'000;
constexpr int interfaces = 200;
constexpr char last_interface[] = "port199";
constexpr char unknown_address[] = "02:00:00:ff:ff:ff"; // all entries are read for it

sim::simulated_device the_device;

std::string address_of(size_t entry)
{
    return {2, 0, 0, 0, char(entry >> 8), char(entry)};
}

// Entries of a table of their own, all on port 1.
void put_table(const std::string &bridge, size_t record_size)
{
    std::string table;
    for (size_t i = 0; i < entries; i++)
        table += address_of(i) + '\1' + std::string(record_size - 7, '\0');
    the_device.put("/sys/class/net/" + bridge + "/brforward", table);
    the_device.put("/sys/class/net/" + bridge + "/brif/p1/port_no", "0x1\n");
}

void run(const std::string &command)
{
    if (system(command.c_str()) != 0)
        fprintf(stderr, "failed: %s\n", command.c_str());
}

// The kernel's own table of br0.
void fill_kernel_table()
{
    std::string lines;
    char line[64];
    for (size_t i = 0; i < entries; i++) {
        snprintf(line, sizeof line, "fdb add 02:00:00:00:%02zx:%02zx dev eth0 master\n", i >> 8, i & 0xff);
        lines += line;
    }
    the_device.put("/tmp/entries", lines);
    run("bridge -batch /tmp/entries");
}

void add_interfaces()
{
    std::string lines;
    for (int i = 0; i < interfaces; i++)
        lines += "link add port" + std::to_string(i) + " type bridge\n";
    the_device.put("/tmp/interfaces", lines);
    run("ip -batch /tmp/interfaces");
}

void read_all(const char *path)
{
    char piece[12288];
    const int fd = open(path, O_RDONLY | O_CLOEXEC);
    while (read(fd, piece, sizeof piece) > 0) {
    }
    close(fd);
}

void reading(benchmark::State &state, const char *path)
{
    for (auto _ : state)
        read_all(path);
}

void list_all(const char *path)
{
    DIR *dir = opendir(path);
    while (readdir(dir)) {
    }
    closedir(dir);
}

// The listing of the interfaces and of a bridge's ports, and what they lead to.
void listing_and_reading(benchmark::State &state)
{
    for (auto _ : state) {
        list_all("/sys/class/net");
        list_all("/sys/class/net/wide/brif");
        read_all("/sys/class/net/wide/brif/p1/port_no");
        read_all("/sys/class/net/wide/brforward");
    }
}

void look_up(benchmark::State &state, const char *bridge)
{
    unsigned age = 0, port = 0;
    for (auto _ : state)
        benchmark::DoNotOptimize(get_mac_brinfo(bridge, unknown_address, &age, &port));
}

void count(void *to, const uint8_t *, const char *)
{
    ++*static_cast<size_t *>(to);
}

void walk(benchmark::State &state)
{
    size_t visited = 0;
    for (auto _ : state)
        fdb_foreach("wide", nullptr, count, &visited);
    if (visited != entries * size_t(state.iterations()))
        state.SkipWithError("not every entry was visited");
}

// The table of counters, and a request for each thing that is asked of the kernel.
void asking(benchmark::State &state)
{
    for (auto _ : state) {
        read_all("/proc/net/dev");
        const int sock = socket(AF_INET, SOCK_DGRAM | SOCK_CLOEXEC, 0);
        ifreq request{};
        snprintf(request.ifr_name, sizeof request.ifr_name, "%s", last_interface);
        for (const unsigned code : {SIOCGIFHWADDR, SIOCGIFADDR, SIOCGIFNETMASK, SIOCGIFFLAGS})
            (void)ioctl(sock, code, &request);
        ethtool_cmd settings{};
        settings.cmd = ETHTOOL_GSET;
        request.ifr_data = reinterpret_cast<char *>(&settings);
        for (int twice = 0; twice < 2; twice++)
            (void)ioctl(sock, SIOCETHTOOL, &request);
        close(sock);
    }
}

void status(benchmark::State &state)
{
    dev_status found{};
    for (auto _ : state)
        fill_dev_status(last_interface, &found);
    if (!found.present)
        state.SkipWithError("the interface was not found");
}

} // namespace

int main(int argc, char **argv)
{
    the_device.enter({.device = VEXA_DEVICES "/access-point", .reachable = {VEXA_BUILD}});
    put_table("narrow", 16);
    put_table("wide", 24);
    fill_kernel_table();
    benchmark::RegisterBenchmark("look_up", look_up, "narrow");
    benchmark::RegisterBenchmark("reading_narrow", reading, "/sys/class/net/narrow/brforward");
    benchmark::RegisterBenchmark("walk", walk);
    benchmark::RegisterBenchmark("reading_wide", listing_and_reading);
    benchmark::RegisterBenchmark("look_up_kernel", look_up, "br0");
    benchmark::RegisterBenchmark("reading_kernel", reading, "/sys/class/net/br0/brforward");
    timings measured = run_and_report(argc, argv);

    benchmark::ClearRegisteredBenchmarks(); // a walk would pass the interfaces that only these need
    add_interfaces();
    benchmark::RegisterBenchmark("status", status);
    benchmark::RegisterBenchmark("asking", asking);
    measured.merge(run_and_report(argc, argv));
    print_verdicts(measured,
                   {
                       {"look-up in the kernel's table, to reading it", "look_up_kernel", {"reading_kernel"}, 1.1},
                       {"a look-up, to reading the file", "look_up", {"reading_narrow"}, 3},
                       {"a walk, to listing and reading", "walk", {"reading_wide"}, 3},
                       {"status among 200 interfaces, to its calls", "status", {"asking"}, 1.3},
                   },
                   {
                       {"ns per entry looked at", {"look_up"}, entries, 10},
                       {"ns per entry visited", {"walk"}, entries, 12},
                   });
    return 0;
}
