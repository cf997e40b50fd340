// SPDX-License-Identifier: MIT
#include "fuzz/check.h"
#include "wireless/station_record.h"

#include <algorithm>

namespace {

// The driver's record, with zeros for what the input lacks; what follows it is taken away from the input.
template <size_t size>
struct record {
    record(const uint8_t *&data, size_t &left)
    {
        const size_t count = std::min(left, size);
        std::copy_n(data, count, content);
        data += count;
        left -= count;
    }
    uint8_t content[size] = {};
};

} // namespace

// An answer about a station, and one with its counters.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    const record<station_answer_size> answer{data, size};
    const record<node_answer_size> counters{data, size};
    stainfo station{};
    fill_station(station, answer.content);
    check(station.identity_len <= sizeof station.identity && station.tx_latency.avg == -1);
    check(station.is_11a + station.is_11b <= 1 && station.is_11ax <= 1 && station.links.next == nullptr);
    fill_node_counters(station, counters.content);
    check(station.tx_eff_pct <= 100 && station.tx_latency.avg >= -1);
    check(station.wifi_tx_attempts == station.tx_retries + station.tx_packets);
    return 0;
}
