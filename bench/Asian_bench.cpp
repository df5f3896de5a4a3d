#include <benchmark/benchmark.h>

#include <vector>

#include "lum-closed-form/AsianOption.hpp"

namespace {

// A one-year call on the average of 12 monthly fixings, three of them past.
void AsianTurnbullWakeman12Fixings(benchmark::State& state) {
    std::vector<double> times;
    for (int i = 4; i <= 12; ++i) times.push_back(i / 12.0);
    const zep::AsianOption option(0, 100.0, 0.3, times, 0.05, 0.02, 100.0, {98.0, 103.0, 101.0});
    for (auto _ : state) benchmark::DoNotOptimize(option.Price("tw"));
}
BENCHMARK(AsianTurnbullWakeman12Fixings);

}  // namespace
