#include <benchmark/benchmark.h>

#include <array>
#include <cmath>
#include <vector>

#include "lum-closed-form/HestonFftPricer.hpp"
#include "lum-closed-form/HestonModel.hpp"

namespace {

const zep::HestonModel kModel(0.04, 1.5, 0.05, 0.6, -0.7);
constexpr std::array<double, 4> kStrikes = {80.0, 95.0, 100.0, 120.0};

// One European price by the characteristic function, strikes cycled, one-year expiry.
void HestonPrice(benchmark::State& state) {
    std::size_t i = 0;
    for (auto _ : state)
        benchmark::DoNotOptimize(kModel.Price(0, kStrikes[i++ & 3], 1.0, 1.0, 0.03, 0.01, 100.0));
}
BENCHMARK(HestonPrice);

// 100 strikes from 70 to 140 by the Carr-Madan FFT (2048 points), the plan made in the loop too.
void HestonFft100Strikes(benchmark::State& state) {
    std::vector<double> strikes(100), prices(100);
    for (int i = 0; i < 100; ++i) strikes[i] = 70.0 + 0.7 * i;
    for (auto _ : state) {
        zep::HestonFftPricer pricer(kModel, 1.0);
        pricer.Prices(0, strikes, 1.0, 0.03, 0.01, 100.0, prices);
        benchmark::DoNotOptimize(prices.data());
    }
}
BENCHMARK(HestonFft100Strikes)->Unit(benchmark::kMicrosecond);

}  // namespace
