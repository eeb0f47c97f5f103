#include "bench/turns.h"

#include "bench/operations.h"

#include <benchmark/benchmark.h>

#include <algorithm>

namespace {

double median(std::vector<double> values)
{
    const auto middle = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2);
    std::nth_element(values.begin(), middle, values.end());
    return *middle;
}

void measure(benchmark::State &state, const std::vector<std::string> &names)
{
    std::vector<Operations::Operation> operations;
    for (const std::string &name : names) {
        operations.push_back(Operations::make(name, static_cast<int>(state.range(0))));
        operations.back()(); // what happens only once
    }
    std::vector<std::vector<double>> times(names.size());
    std::vector<std::vector<double>> ratios(names.size());
    for (auto _ : state) {
        double sum = 0;
        for (std::size_t i = 0; i < names.size(); ++i) {
            const double time = operations[i]();
            sum += time;
            times[i].push_back(time);
            ratios[i].push_back(times.front().back() / time);
        }
        state.SetIterationTime(sum);
    }
    for (std::size_t i = 0; i < names.size(); ++i) {
        state.counters[names[i]] = median(times[i]);
        if (i > 0) {
            state.counters["to " + names[i]] = median(ratios[i]);
        }
    }
}

} // namespace

bool takeTurns(const std::vector<std::string> &names, const std::vector<int> &sizes, int rounds)
{
    auto *turns = benchmark::RegisterBenchmark(
        names.front().c_str(), [names](benchmark::State &state) { measure(state, names); });
    turns->Iterations(rounds)->UseManualTime()->Unit(benchmark::kMillisecond);
    for (const int size : sizes) {
        turns->Arg(size);
    }
    return true;
}
