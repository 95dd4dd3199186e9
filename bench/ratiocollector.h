#pragma once

// The benchmarks' reporter: prints as the console does and keeps each benchmark's CPU time per
// iteration (the median of repetitions, when repeated) and its counters, for the ratio tables.

#include <benchmark/benchmark.h>

#include <QByteArray>
#include <QtGlobal>

#include <algorithm>
#include <cstdint>
#include <ctime>
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

/*! CPU time of the calling thread in nanoseconds: on a shared machine the wall clock also counts the
 *  other processes. */
inline std::int64_t threadcputime()
{
    timespec now{};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &now);
    return std::int64_t(now.tv_sec) * 1000000000 + now.tv_nsec;
}

/*! The median and the quartiles of a sample. */
struct spread
{
    double median = 0;
    double low = 0;  // first quartile
    double high = 0; // third quartile
};

/*! The spread of a[i] / b[i], for times measured in pairs (round i timed a and b back to back):
 *  a burst of load that slows one round slows both of its times, and the median leaves out the
 *  rounds it slowed unevenly. */
inline spread pairedratios(const std::vector<double> &a, const std::vector<double> &b)
{
    std::vector<double> ratios;
    for (std::size_t i = 0; i < a.size() && i < b.size(); ++i) {
        if (b[i] > 0)
            ratios.push_back(a[i] / b[i]);
    }
    if (ratios.empty())
        return {};
    std::sort(ratios.begin(), ratios.end());
    const auto at = [&](double p) {
        const double place = p * double(ratios.size() - 1);
        const auto below = std::size_t(place);
        const std::size_t above = std::min(below + 1, ratios.size() - 1);
        return ratios[below] + (ratios[above] - ratios[below]) * (place - double(below));
    };
    return {at(0.5), at(0.25), at(0.75)};
}

/*! The command line with the benchmarks repeated and interleaved, unless it says otherwise: on a
 *  shared machine a burst of load then spreads over all benchmarks instead of falling on one. */
inline std::vector<char *> benchmarkarguments(int argc, char **argv, const char *repetitions = "5")
{
    static std::string repeat;
    static char interleaving[] = "--benchmark_enable_random_interleaving=true";
    static char aggregates[] = "--benchmark_report_aggregates_only=true";
    repeat = std::string("--benchmark_repetitions=") + repetitions;
    std::vector<char *> args(argv, argv + argc);
    bool repeated = false;
    for (int i = 1; i < argc; ++i)
        repeated = repeated || std::string(argv[i]).rfind("--benchmark_repetitions", 0) == 0;
    if (!repeated)
        args.insert(args.end(), {repeat.data(), interleaving, aggregates});
    args.push_back(nullptr);
    return args;
}

/*! The real platform when there is a display (the offscreen one paints into plain images), the
 *  offscreen one otherwise. Call before creating the application. */
inline void choosebenchmarkplatform()
{
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM") && qEnvironmentVariableIsEmpty("DISPLAY")
        && qEnvironmentVariableIsEmpty("WAYLAND_DISPLAY"))
        qputenv("QT_QPA_PLATFORM", QByteArrayLiteral("offscreen"));
}
