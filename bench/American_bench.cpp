#include <benchmark/benchmark.h>

#include "lum-closed-form/BaroneAdesiWhaley.hpp"
#include "lum-closed-form/BjerksundStensland.hpp"
#include "lum-closed-form/LeisenReimerTree.hpp"
#include "zep-pde/FdmAmericanEngine.hpp"

namespace {

// The at-the-money one-year put, r = 5%, sigma = 20%, on a 200 x 200 grid.
void AmericanPutFd200x200(benchmark::State& state) {
    for (auto _ : state)
        benchmark::DoNotOptimize(zep::FdmAmericanEngine(1, 100.0, 0.2, 1.0, 0.05, 0.0, 100.0, 200, 200).Price());
}
BENCHMARK(AmericanPutFd200x200)->Unit(benchmark::kMicrosecond);

void AmericanPutBaroneAdesiWhaley(benchmark::State& state) {
    double spot = 100.0;
    for (auto _ : state) {
        benchmark::DoNotOptimize(zep::BaroneAdesiWhaleyPrice(1, 100.0, 0.2, 1.0, 0.05, 0.0, spot));
        spot = spot == 100.0 ? 100.5 : 100.0;
    }
}
BENCHMARK(AmericanPutBaroneAdesiWhaley);

void AmericanPutBjerksundStensland(benchmark::State& state) {
    double spot = 100.0;
    for (auto _ : state) {
        benchmark::DoNotOptimize(zep::BjerksundStenslandPrice(1, 100.0, 0.2, 1.0, 0.05, 0.0, spot));
        spot = spot == 100.0 ? 100.5 : 100.0;
    }
}
BENCHMARK(AmericanPutBjerksundStensland);

void AmericanPutLeisenReimer201(benchmark::State& state) {
    for (auto _ : state)
        benchmark::DoNotOptimize(zep::LeisenReimerPrice(1, 100.0, 0.2, 1.0, 0.05, 0.0, 100.0, 201, true));
}
BENCHMARK(AmericanPutLeisenReimer201)->Unit(benchmark::kMicrosecond);

}  // namespace
