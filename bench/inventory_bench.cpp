// SPDX-License-Identifier: MIT
// The snapshot of the processes beside the calls that it cannot do without, and beside other tools.

#include "bench/child_program.h"
#include "bench/inventory_floor.h"
#include "bench/process_population.h"
#include "bench/promises.h"

#include <jansson.h>
#include <libvexa.h>

namespace {

void with_floor(benchmark::State &state, bool with_fds)
{
    for (auto _ : state)
        benchmark::DoNotOptimize(floor_of_snapshot(with_fds));
}

void with_snapshot(benchmark::State &state, bool with_fds)
{
    for (auto _ : state)
        vexa_ps_list_free(vexa_ps_filter(with_fds, nullptr, nullptr));
}

void to_json(benchmark::State &state)
{
    for (auto _ : state) {
        state.PauseTiming();
        vexa_ps_list *list = vexa_ps_filter(1, nullptr, nullptr);
        state.ResumeTiming();
        json_t *document = vexa_ps_list_to_array(list);
        state.PauseTiming();
        json_decref(document);
        state.ResumeTiming();
    }
}

} // namespace

int main(int argc, char **argv)
{
    static constexpr const char *ours[] = {VEXA_INVENTORY_LISTING, nullptr};
    static constexpr const char *lsof[] = {"lsof", "-n", "-P", "-w", nullptr};
    static constexpr const char *ss[] = {"ss", "-tulnpax", nullptr};
    const process_population population;
    benchmark::RegisterBenchmark("floor", with_floor, true);
    benchmark::RegisterBenchmark("snapshot", with_snapshot, true);
    benchmark::RegisterBenchmark("counting_floor", with_floor, false);
    benchmark::RegisterBenchmark("counting_snapshot", with_snapshot, false);
    benchmark::RegisterBenchmark("to_json", to_json);
    benchmark::RegisterBenchmark("program", run_program, ours)->UseManualTime();
    benchmark::RegisterBenchmark("lsof", run_program, lsof)->UseManualTime();
    benchmark::RegisterBenchmark("ss", run_program, ss)->UseManualTime();
    run_and_judge(argc, argv,
                  {
                      {"snapshot with descriptors, to its calls", "snapshot", {"floor"}, 1.10},
                      {"snapshot without them, to its calls", "counting_snapshot", {"counting_floor"}, 1.08},
                      {"its JSON, to the calls of the snapshot", "to_json", {"floor"}, 0.3},
                      {"a program, to lsof -n -P -w", "program", {"lsof"}, 1 / 4.8},
                      {"a program, to ss -tulnpax", "program", {"ss"}, 1 / 1.25},
                  });
    return 0;
}
