#pragma once

// The benchmarks' reporter: prints as the console does and keeps each benchmark's CPU time per
// iteration (the median of repetitions, when repeated) and its counters, for the ratio tables.

#include <benchmark/benchmark.h>

#include <map>
#include <string>
#include <vector>

class ratiocollector : public benchmark::ConsoleReporter
{
public:
    void ReportRuns(const std::vector<Run> &runs) override
    {
        for (const Run &run : runs) {
            if (run.run_type == Run::RT_Aggregate && run.aggregate_name != "median")
                continue;
            const std::string name = run.run_name.str();
            // CPU time of the benchmark's thread: on a shared machine the wall clock also counts
            // the other processes.
            results[name] = run.GetAdjustedCPUTime();
            for (const auto &[counter, value] : run.counters)
                counters[name + "/" + counter] = value.value;
        }
        ConsoleReporter::ReportRuns(runs);
    }

    /*! a's time over b's (times \a scale), or 0 when either is missing. */
    double ratio(const std::string &a, const std::string &b, double scale = 1) const
    {
        const auto x = results.find(a);
        const auto y = results.find(b);
        return x != results.end() && y != results.end() && y->second > 0 ? x->second / (y->second * scale) : 0.0;
    }

    std::map<std::string, double> results;
    std::map<std::string, double> counters;
};
