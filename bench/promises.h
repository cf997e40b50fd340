// SPDX-License-Identifier: MIT
#pragma once

#include <algorithm>
#include <benchmark/benchmark.h>
#include <cstdio>
#include <map>
#include <string>
#include <vector>

// A benchmark whose result is a verdict: the medians of interleaved repetitions, compared with what was promised.

class medians : public benchmark::ConsoleReporter {
public:
    medians() : ConsoleReporter{OO_Tabular} {}

    bool ReportContext(const Context &context) override
    {
        PrintBasicContext(&GetErrorStream(), context);
        return true;
    }

    // One line per benchmark; the repetitions themselves say nothing that the median does not.
    void ReportRuns(const std::vector<Run> &runs) override
    {
        for (const Run &run : runs) {
            if (run.run_type != Run::RT_Aggregate || run.aggregate_name != "median")
                continue;
            // where the work is another process's, the benchmark says itself how long it took
            const bool by_itself = run.run_name.time_type == "manual_time";
            const double time = by_itself ? run.GetAdjustedRealTime() : run.GetAdjustedCPUTime();
            nanoseconds_[run.run_name.function_name] = time;
            printf("%-36s %10.1f ns\n", run.run_name.function_name.c_str(), time);
        }
    }

    void merge(const medians &other) { nanoseconds_.insert(other.nanoseconds_.begin(), other.nanoseconds_.end()); }

    double operator[](const std::string &name) const
    {
        const auto found = nanoseconds_.find(name);
        return found == nanoseconds_.end() ? 0 : found->second;
    }

private:
    std::map<std::string, double> nanoseconds_;
};

// `subject` takes at most `factor` times as long as the fastest of `peers`; several names joined by "+" add up. Without
// peers it takes at most `factor` nanoseconds for each of `steps`.
struct promise {
    std::string what, subject;
    std::vector<std::string> peers;
    double factor;
    double steps = 1;
};

inline double sum_of(const medians &measured, const std::string &names)
{
    double sum = 0;
    for (size_t at = 0; at < names.size();) {
        const size_t end = std::min(names.find('+', at), names.size());
        sum += measured[names.substr(at, end - at)];
        at = end + 1;
    }
    return sum;
}

inline void print_verdicts(const medians &measured, const std::vector<promise> &promises)
{
    printf("\n%-58s %8s %8s  %s\n", "promise", "target", "measured", "");
    for (const promise &p : promises) {
        double best = p.peers.empty() ? p.steps : 0;
        for (const std::string &peer : p.peers) {
            const double time = sum_of(measured, peer);
            best = best > 0 ? std::min(best, time) : time;
        }
        const double subject = sum_of(measured, p.subject);
        if (best <= 0 || subject <= 0)
            continue; // left out by the filter
        printf("%-58s %8.2f %8.2f  %s\n", p.what.c_str(), p.factor, subject / best,
               subject <= p.factor * best ? "kept" : "MISSED");
    }
    printf("\n");
}

// Runs all benchmarks and says which promises were kept. Repetitions take turns, so that a busy moment of the machine
// meets all of them; options of the command line come last and win.
inline medians run_and_report(int argc, char **argv)
{
    std::string options[] = {"--benchmark_repetitions=31", "--benchmark_enable_random_interleaving=true",
                             "--benchmark_min_time=0.01"};
    std::vector<char *> arguments{argv[0]};
    for (std::string &option : options)
        arguments.push_back(option.data());
    arguments.insert(arguments.end(), argv + 1, argv + argc);
    int count = int(arguments.size());
    medians measured;
    benchmark::Initialize(&count, arguments.data());
    benchmark::RunSpecifiedBenchmarks(&measured);
    return measured;
}

inline void run_and_judge(int argc, char **argv, const std::vector<promise> &promises)
{
    print_verdicts(run_and_report(argc, argv), promises);
}
