// SPDX-License-Identifier: MIT
#pragma once

#include <algorithm>
#include <benchmark/benchmark.h>
#include <cstdio>
#include <functional>
#include <map>
#include <string>
#include <vector>

// A benchmark whose result is a verdict: how the times compare with what was promised. The machine is faster at some
// moments than at others, so all benchmarks take turns, round after round. What runs side by side is compared within
// each round, and the median of these ratios counts.

class timings : public benchmark::ConsoleReporter {
public:
    bool ReportContext(const Context &context) override
    {
        if (nanoseconds_.empty())
            PrintBasicContext(&GetErrorStream(), context);
        return true;
    }

    void ReportRuns(const std::vector<Run> &runs) override
    {
        for (const Run &run : runs)
            if (run.error_occurred)
                fprintf(stderr, "%s: %s\n", run.run_name.function_name.c_str(), run.error_message.c_str());
            else if (run.run_type == Run::RT_Iteration)
                nanoseconds_[run.run_name.function_name].push_back(time_of(run));
    }

    void merge(const timings &other) { nanoseconds_.insert(other.nanoseconds_.begin(), other.nanoseconds_.end()); }

    // Of each round; empty for what did not run.
    const std::vector<double> &operator[](const std::string &name) const
    {
        static const std::vector<double> none;
        const auto found = nanoseconds_.find(name);
        return found == nanoseconds_.end() ? none : found->second;
    }

    void print() const
    {
        for (const auto &[name, times] : nanoseconds_)
            printf("%-44s fastest %12.1f ns, median %12.1f ns\n", name.c_str(), fastest(times), median(times));
    }

    static double fastest(const std::vector<double> &times) { return *std::min_element(times.begin(), times.end()); }

    static double median(std::vector<double> times)
    {
        std::sort(times.begin(), times.end());
        return times[times.size() / 2];
    }

private:
    // Where the work is another process's, the benchmark says itself how long it took.
    static double time_of(const Run &run)
    {
        const bool by_itself = run.run_name.time_type == "manual_time";
        return by_itself ? run.GetAdjustedRealTime() : run.GetAdjustedCPUTime();
    }

    std::map<std::string, std::vector<double>> nanoseconds_; // of each round
};

// The subject takes at most `factor` times as long as each of the peers.
struct promise {
    std::string what, subject;
    std::vector<std::string> peers;
    double factor;
};

// 0 for what the filter left out.
inline double measure(const timings &measured, const promise &p)
{
    const std::vector<double> &subject = measured[p.subject];
    double largest = 0;
    for (const std::string &name : p.peers) {
        std::vector<double> ratios = measured[name];
        if (subject.empty() || ratios.size() != subject.size())
            return 0;
        std::transform(subject.begin(), subject.end(), ratios.begin(), ratios.begin(), std::divides<>{});
        largest = std::max(largest, timings::median(ratios));
    }
    return largest;
}

// The subjects take, in their fastest rounds, at most so many nanoseconds for each of their steps.
struct pace {
    std::string what;
    std::vector<std::string> subjects;
    double steps, nanoseconds;
};

inline double measure(const timings &measured, const pace &p)
{
    double sum = 0;
    for (const std::string &name : p.subjects) {
        if (measured[name].empty())
            return 0;
        sum += timings::fastest(measured[name]);
    }
    return sum / p.steps;
}

inline void print_verdict(const std::string &what, double target, double result)
{
    if (result > 0)
        printf("%-58s %8.2f %8.2f  %s\n", what.c_str(), target, result, result <= target ? "kept" : "MISSED");
}

inline void print_verdicts(const timings &measured, const std::vector<promise> &promises,
                           const std::vector<pace> &paces = {})
{
    printf("\n%-58s %8s %8s\n", "what was promised", "at most", "measured");
    for (const promise &p : promises)
        print_verdict(p.what, p.factor, measure(measured, p));
    for (const pace &p : paces)
        print_verdict(p.what, p.nanoseconds, measure(measured, p));
    printf("\n");
}

// Options of the command line come last and win.
inline timings run_and_report(int argc, char **argv)
{
    constexpr int rounds = 31;
    std::string brief = "--benchmark_min_time=0.01";
    std::vector<char *> arguments{argv[0], brief.data()};
    arguments.insert(arguments.end(), argv + 1, argv + argc);
    int count = int(arguments.size());
    timings measured;
    benchmark::Initialize(&count, arguments.data());
    for (int round = 0; round < rounds; round++)
        benchmark::RunSpecifiedBenchmarks(&measured);
    measured.print();
    return measured;
}

inline void run_and_judge(int argc, char **argv, const std::vector<promise> &promises,
                          const std::vector<pace> &paces = {})
{
    print_verdicts(run_and_report(argc, argv), promises, paces);
}
