// SPDX-License-Identifier: MIT
#pragma once

#include <algorithm>
#include <benchmark/benchmark.h>
#include <cstdio>
#include <map>
#include <string>
#include <vector>

// A benchmark whose result is a verdict: interleaved repetitions, compared with what was promised. Whatever else the
// machine does can only slow a run down. Among many short runs some meet nothing of it, so the fastest are compared;
// long ones all meet some, so their medians are.

struct timing {
    double fastest = 0, median = 0;
};

class timings : public benchmark::ConsoleReporter {
public:
    timings() : ConsoleReporter{OO_Tabular} {}

    bool ReportContext(const Context &context) override
    {
        PrintBasicContext(&GetErrorStream(), context);
        return true;
    }

    // One line per benchmark, for all of its repetitions.
    void ReportRuns(const std::vector<Run> &runs) override
    {
        std::map<std::string, std::vector<double>> times;
        for (const Run &run : runs)
            if (run.run_type == Run::RT_Iteration)
                times[run.run_name.function_name].push_back(time_of(run));
        for (auto &[name, of] : times) {
            std::sort(of.begin(), of.end());
            const timing &t = timings_[name] = {of.front(), of[of.size() / 2]};
            printf("%-44s fastest %12.1f ns, median %12.1f ns\n", name.c_str(), t.fastest, t.median);
        }
    }

    void merge(const timings &other) { timings_.insert(other.timings_.begin(), other.timings_.end()); }

    timing operator[](const std::string &name) const
    {
        const auto found = timings_.find(name);
        return found == timings_.end() ? timing{} : found->second;
    }

private:
    // Where the work is another process's, the benchmark says itself how long it took.
    static double time_of(const Run &run)
    {
        const bool by_itself = run.run_name.time_type == "manual_time";
        return by_itself ? run.GetAdjustedRealTime() : run.GetAdjustedCPUTime();
    }

    std::map<std::string, timing> timings_;
};

// `subject` takes at most `factor` times as long as the fastest of `peers`; several names joined by "+" add up. Without
// peers it takes at most `factor` nanoseconds for each of `steps`.
struct promise {
    std::string what, subject;
    std::vector<std::string> peers;
    double factor;
    double steps = 1;
};

inline timing sum_of(const timings &measured, const std::string &names)
{
    timing sum;
    for (size_t at = 0; at < names.size();) {
        const size_t end = std::min(names.find('+', at), names.size());
        const timing t = measured[names.substr(at, end - at)];
        sum.fastest += t.fastest;
        sum.median += t.median;
        at = end + 1;
    }
    return sum;
}

inline void print_verdicts(const timings &measured, const std::vector<promise> &promises)
{
    constexpr double long_run = 1e6; // a millisecond
    printf("\n%-58s %8s %8s\n", "promise", "target", "measured");
    for (const promise &p : promises) {
        const timing subject = sum_of(measured, p.subject);
        const auto compared = subject.fastest < long_run ? &timing::fastest : &timing::median;
        double best = p.peers.empty() ? p.steps : 0;
        for (const std::string &peer : p.peers) {
            const double time = sum_of(measured, peer).*compared;
            best = best > 0 ? std::min(best, time) : time;
        }
        if (best <= 0 || subject.*compared <= 0)
            continue; // left out by the filter
        printf("%-58s %8.2f %8.2f  %s\n", p.what.c_str(), p.factor, subject.*compared / best,
               subject.*compared <= p.factor * best ? "kept" : "MISSED");
    }
    printf("\n");
}

// Runs all benchmarks and says which promises were kept. Repetitions take turns, so that a busy moment of the machine
// meets all of them; options of the command line come last and win.
inline timings run_and_report(int argc, char **argv)
{
    std::string options[] = {"--benchmark_repetitions=101", "--benchmark_enable_random_interleaving=true",
                             "--benchmark_min_time=0.002"};
    std::vector<char *> arguments{argv[0]};
    for (std::string &option : options)
        arguments.push_back(option.data());
    arguments.insert(arguments.end(), argv + 1, argv + argc);
    int count = int(arguments.size());
    timings measured;
    benchmark::Initialize(&count, arguments.data());
    benchmark::RunSpecifiedBenchmarks(&measured);
    return measured;
}

inline void run_and_judge(int argc, char **argv, const std::vector<promise> &promises)
{
    print_verdicts(run_and_report(argc, argv), promises);
}
