// SPDX-License-Identifier: MIT
// The scores of 1,024 stations beside reading their records once.

#include "bench/promises.h"

#include <cstring>
#include <libvexa.h>
#include <memory>
#include <random>

namespace {

constexpr size_t stations = 1024;

std::mt19937 random_bits{1};

uint32_t up_to(uint32_t most)
{
    return uint32_t(random_bits()) % (most + 1);
}

// What a cycle may find of a station, good or bad.
void meet(stainfo &sta)
{
    constexpr uint32_t modes[] = {11, 17, 18, 23};
    sta.state = uint16_t(4700 + up_to(500));
    sta.tx_rate_mov = up_to(200'000);
    sta.tx_eff_pct = up_to(100);
    sta.rx_tcp_stats.lat = sta.tx_tcp_stats.lat = {0, 1, int32_t(up_to(100))};
    sta.wifi_tx_attempts_mov = up_to(10'000);
    sta.tx_retries_mov = up_to(uint32_t(sta.wifi_tx_attempts_mov));
    sta.wifi_tx_dropped_mov = up_to(uint32_t(sta.wifi_tx_attempts_mov / 100));
    sta.tracking = {modes[up_to(3)], up_to(1), up_to(1), up_to(12), up_to(2000), up_to(300),
                    up_to(3),        0,        0,        up_to(1),  up_to(1),    up_to(5)};
}

// Each in a block of its own, as get_stalist() makes them, and with the history of four cycles.
std::vector<std::unique_ptr<stainfo>> make_population()
{
    std::vector<std::unique_ptr<stainfo>> made;
    for (size_t i = 0; i < stations; i++) {
        auto sta = std::make_unique<stainfo>();
        for (size_t cycle = 0; cycle <= VEXA_SCORE_HISTORY; cycle++) {
            meet(*sta);
            calc_sta_satisfaction(sta.get());
            for (vexa_score *score : {&sta->satisfaction, &sta->satisfaction_exp})
                if (cycle < VEXA_SCORE_HISTORY)
                    memcpy(score->history[cycle], score->subscores_now, sizeof score->subscores_now);
        }
        made.push_back(std::move(sta));
    }
    return made;
}

const auto population = make_population();

void scores(benchmark::State &state)
{
    for (auto _ : state)
        for (const auto &sta : population) {
            calc_sta_satisfaction(sta.get());
            calc_sta_satisfaction_mov(&sta->satisfaction);
            calc_sta_satisfaction_mov(&sta->satisfaction_exp);
        }
}

void reading(benchmark::State &state)
{
    for (auto _ : state) {
        uint64_t sum = 0;
        for (const auto &sta : population) {
            uint64_t words[sizeof(stainfo) / sizeof(uint64_t)];
            memcpy(words, sta.get(), sizeof words);
            for (const uint64_t word : words)
                sum += word;
        }
        benchmark::DoNotOptimize(sum);
    }
}

} // namespace

int main(int argc, char **argv)
{
    benchmark::RegisterBenchmark("scores", scores);
    benchmark::RegisterBenchmark("reading", reading);
    run_and_judge(argc, argv, {{"both scores and their moving ones, to reading", "scores", {"reading"}, 3}});
}
