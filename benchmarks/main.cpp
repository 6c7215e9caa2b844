// SPDX-License-Identifier: MIT
//
// Runs all benchmarks and prints, below their times, the ratios to their peers.
#include <algorithm>
#include <cstdio>
#include <map>
#include <string>
#include <string_view>
#include <vector>

#include <benchmark/benchmark.h>

#include "benchmarks/Comparison.h"

namespace {

class RatioReporter : public benchmark::ConsoleReporter {
public:
    void ReportRuns(const std::vector<Run>& runs) override {
        ConsoleReporter::ReportRuns(runs);
        for (const Run& run : runs) {
            if (run.run_type != Run::RT_Iteration || run.error_occurred)
                continue;
            const auto iterations = static_cast<double>(run.iterations);
            const std::string& name = run.run_name.function_name;
            times_[name].push_back(run.cpu_accumulated_time / iterations);
            wallTimes_[name].push_back(run.real_accumulated_time / iterations);
        }
    }

    void printRatios() {
        std::printf("\n%-64s %8s  %s\n", "ratio of medians, processor time", "ratio", "goal");
        for (const auto& comparison : yg::benchmarks::comparisons()) {
            if (!times_.contains(comparison.subject) || !times_.contains(comparison.peer))
                continue;
            auto& times = comparison.wallTime ? wallTimes_ : times_;
            print(comparison.subject + " / " + comparison.peer +
                      (comparison.wallTime ? ", by the clock" : ""),
                  median(times[comparison.subject]) / median(times[comparison.peer]),
                  comparison.goal);
        }
        for (const auto& note : yg::benchmarks::notes())
            print(note.what, note.figure, note.goal);
    }

private:
    static void print(const std::string& what, double figure, double goal) {
        if (goal > 0)
            std::printf("%-64s %8.2f  <= %.2f%s\n", what.c_str(), figure, goal,
                        figure <= goal ? "" : "  MISSED");
        else
            std::printf("%-64s %8.2f\n", what.c_str(), figure);
    }

    static double median(std::vector<double>& all) {
        std::sort(all.begin(), all.end());
        return all[all.size() / 2];
    }

    std::map<std::string, std::vector<double>> times_;
    std::map<std::string, std::vector<double>> wallTimes_;
};

}  // namespace

int main(int argc, char** argv) {
    if (argc > 1 && std::string_view(argv[1]) == "--peak-of-layout") {
        std::printf("%.0f\n", yg::benchmarks::peakOfLayout(argc > 2 ? argv[2] : ""));
        return 0;
    }
    // What the command line says comes later and wins.
    std::vector<char*> arguments(argv, argv + argc);
    std::string repetitions = "--benchmark_repetitions=9";
    std::string interleaving = "--benchmark_enable_random_interleaving=true";
    std::string quiet = "--benchmark_display_aggregates_only=false";
    arguments.insert(arguments.begin() + 1,
                     {repetitions.data(), interleaving.data(), quiet.data()});
    int count = static_cast<int>(arguments.size());
    benchmark::Initialize(&count, arguments.data());
    if (benchmark::ReportUnrecognizedArguments(count, arguments.data()))
        return 1;

    yg::benchmarks::registerGraphics();
    yg::benchmarks::registerInspection();
    yg::benchmarks::registerLayoutLoading();
    yg::benchmarks::registerLayoutLookup();
    yg::benchmarks::registerNet();
    yg::benchmarks::registerPalette();
    yg::benchmarks::registerEventsAndServers();
    yg::benchmarks::registerSettings();

    RatioReporter reporter;
    benchmark::RunSpecifiedBenchmarks(&reporter);
    reporter.printRatios();
    benchmark::Shutdown();
    return 0;
}
