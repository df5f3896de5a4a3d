// Barrier and digital pricing in C++: the Black-Scholes single barrier and corridor, the
// Vanna-Volga knock-out with its bumped Greeks, and the finite-difference range digital.
#include <benchmark/benchmark.h>

#include "lum-closed-form/EuropeanBarrierBS.hpp"
#include "lum-closed-form/EuropeanBarrierVV_Fisher.hpp"
#include "zep-pde/FdmDoubleDigitalEngine.hpp"

namespace {

void SingleBarrierBS(benchmark::State& state) {
    double spot = 1.08;
    for (auto _ : state) {
        benchmark::DoNotOptimize(spot);
        const zep::EuropeanBarrierBS option(0, 3, 1.10, 1.02, 0.09, 0.5, 0.505, 0.035, 0.02, spot);
        benchmark::DoNotOptimize(option.Price());
    }
}
BENCHMARK(SingleBarrierBS);

void DoubleBarrierBS(benchmark::State& state) {
    double spot = 1.08;
    for (auto _ : state) {
        benchmark::DoNotOptimize(spot);
        const zep::EuropeanBarrierBS option(0, 7, 1.10, 1.0, 1.18, 0.09, 0.5, 0.505, 0.035, 0.02, spot);
        benchmark::DoNotOptimize(option.Price());
    }
}
BENCHMARK(DoubleBarrierBS);

void VannaVolgaKnockOut(benchmark::State& state) {
    double spot = 1.08;
    for (auto _ : state) {
        benchmark::DoNotOptimize(spot);
        const zep::EuropeanBarrierVV_Fisher option(spot, 0.035, 0.02, 0.09, 0.5, 0.505, -0.01, 0.003, 1.10, 0, 3,
                                                   1.02, 0, false);
        benchmark::DoNotOptimize(option.Price());
    }
}
BENCHMARK(VannaVolgaKnockOut);

void FdRangeDigital200x200(benchmark::State& state) {
    for (auto _ : state) {
        const zep::FdmDoubleDigitalEngine engine(1.08, 1.02, 1.14, 0.1, 0.5, 0.51, 0.035, 0.02, 200, 200, 0.6, 1.8);
        benchmark::DoNotOptimize(engine.Price());
    }
}
BENCHMARK(FdRangeDigital200x200)->Unit(benchmark::kMicrosecond);

}  // namespace
