// SPDX-License-Identifier: MIT
// The stations of a VAP beside the bare requests that ask for them. It runs on the simulated device, whose driver
// answers in this process.

#include "bench/promises.h"
#include "sim/driver/driver.h"
#include "sim/simulated_device.h"

#include <climits>
#include <cstring>
#include <fcntl.h>
#include <libvexa.h>
#include <malloc.h>
#include <net/if.h>
#include <sys/ioctl.h>
#include <sys/socket.h>
#include <unistd.h>

namespace {

constexpr int stations = 250;
constexpr char vap[] = "ra0";
sim::simulated_device the_device;

std::string station_lines()
{
    std::string lines = "radio ra0 noise=-92 frequency=2437\nvap ra0 radio=ra0\n";
    for (int i = 0; i < stations; i++) {
        char line[96];
        snprintf(line, sizeof line, "station 02:57:00:00:00:%02x vap=ra0 tx_rate=%d tx_packets=%d\n", i, i, i);
        lines += line;
    }
    return lines;
}

void list(benchmark::State &state)
{
    for (auto _ : state) {
        vexa_list *listed = get_stalist(vap);
        state.PauseTiming();
        free_stalist(listed);
        state.ResumeTiming();
    }
    vexa_list *found = get_stalist(vap);
    int count = 0;
    for (const vexa_list *link = found->next; link != found; link = link->next)
        count += reinterpret_cast<const stainfo *>(link)->valid == 1;
    free_stalist(found);
    if (count != stations)
        state.SkipWithError("not every station was found");
}

int stations_of_tracker(uint8_t (&macs)[16384])
{
    struct {
        uint32_t ifindex, padding;
        uint8_t *buffer;
        uint64_t length;
    } request = {if_nametoindex(vap), 0, macs, sizeof macs};
    const int device = open("/dev/vexa_sta_ht", O_RDWR | O_CLOEXEC);
    const int length = ioctl(device, 0x80185502, &request);
    close(device);
    return length;
}

void ask(int sock, unsigned long number, void *data, uint16_t length)
{
    struct {
        char name[16];
        void *data;
        uint16_t length, flags;
        uint32_t padding;
    } request = {"ra0", data, length, 0, 0};
    (void)ioctl(sock, number, &request);
}

void requests(benchmark::State &state)
{
    static uint8_t macs[16384], record[2648], counters[448];
    for (auto _ : state) {
        const int length = stations_of_tracker(macs);
        const int sock = socket(AF_INET, SOCK_DGRAM | SOCK_CLOEXEC, 0);
        for (int at = 0; at < length; at += 6) {
            memcpy(record + 32, macs + at, 6);
            ask(sock, 0x8a20, record, sizeof record);
            memcpy(counters, macs + at, 6);
            ask(sock, 0x8a22, counters, sizeof counters);
        }
        close(sock);
    }
}

} // namespace

int main(int argc, char **argv)
{
    mallopt(M_TRIM_THRESHOLD, INT_MAX); // a daemon's heap has the pages that it needs each time
    the_device.enter({.device = VEXA_DEVICES "/access-point", .reachable = {VEXA_BUILD}});
    the_device.put("/var/run/vexa-sim/wireless", station_lines());
    benchmark::RegisterBenchmark("list", list);
    benchmark::RegisterBenchmark("requests", requests);
    run_and_judge(argc, argv, {{"250 stations, to the requests for them", "list", {"requests"}, 1.1}});
    return 0;
}
