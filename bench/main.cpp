// SPDX-License-Identifier: Apache-2.0
// Runs the benchmarks and prints the table of ratios.
#include <benchmark/benchmark.h>
#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <map>
#include <string>
#include <vector>

#include "ratios.h"

namespace {

struct Ratio {
    std::string name;
    double aim;
    std::function<std::optional<double>()> value;
};

std::vector<Ratio> &Ratios()
{
    static std::vector<Ratio> ratios;
    return ratios;
}

std::map<std::string, double> &Times()
{
    static std::map<std::string, double> times;
    return times;
}

// Prints as usual and keeps each benchmark's least processor time: what disturbs a run from outside
// only ever makes it slower.
class Reporter : public benchmark::ConsoleReporter {
public:
    Reporter() : ConsoleReporter(isatty(STDOUT_FILENO) == 1 ? OO_ColorTabular : OO_Tabular) {}
    void ReportRuns(const std::vector<Run> &runs) override
    {
        for (const Run &run : runs)
            if (!run.error_occurred && run.iterations > 0 && run.run_type == Run::RT_Iteration)
                Keep(run.run_name.str(),
                     run.cpu_accumulated_time / static_cast<double>(run.iterations) * 1e9);
        ConsoleReporter::ReportRuns(runs);
    }

private:
    static void Keep(const std::string &name, double time)
    {
        auto [kept, isNew] = Times().try_emplace(name, time);
        if (!isNew)
            kept->second = std::min(kept->second, time);
    }
};

void PrintRatios()
{
    std::printf("\n%-78s %10s %8s\n", "ratio", "measured", "aim");
    for (const Ratio &ratio : Ratios()) {
        std::optional<double> value = ratio.value();
        if (!value)
            continue;
        std::printf("%-78s %10.2f ", ratio.name.c_str(), *value);
        if (ratio.aim > 0)
            std::printf("%8.2f  %s\n", ratio.aim, *value <= ratio.aim ? "met" : "missed");
        else
            std::printf("%8s\n", "-");
    }
}

} // namespace

namespace bench {

std::optional<double> CpuTime(const std::string &name)
{
    auto found = Times().find(name);
    if (found == Times().end())
        return std::nullopt;
    return found->second;
}

void AddRatio(const std::string &name, double aim, std::function<std::optional<double>()> value)
{
    Ratios().push_back({name, aim, std::move(value)});
}

void AddTimeRatio(const std::string &name, double aim, const std::string &measured,
                  const std::string &base)
{
    AddRatio(name, aim, [measured, base]() -> std::optional<double> {
        auto over = CpuTime(measured), under = CpuTime(base);
        if (!over || !under)
            return std::nullopt;
        return *over / *under;
    });
}

} // namespace bench

int main(int argc, char **argv)
{
    // Each benchmark several times, spread over the run; the caller's own flags come later and win.
    std::string repetitions = "--benchmark_repetitions=5";
    std::string interleaving = "--benchmark_enable_random_interleaving=true";
    std::vector<char *> arguments = {argv[0], repetitions.data(), interleaving.data()};
    arguments.insert(arguments.end(), argv + 1, argv + argc);
    argc = static_cast<int>(arguments.size());
    arguments.push_back(nullptr);
    argv = arguments.data();
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv))
        return 1;
    Reporter reporter;
    benchmark::RunSpecifiedBenchmarks(&reporter);
    PrintRatios();
    return 0;
}
