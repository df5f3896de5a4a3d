#include <benchmark/benchmark.h>

#include <random>
#include <vector>

#include "lum-interest-rates/YieldCurve.hpp"

namespace {

// A 30-pillar continuous zero curve, linear in the rate, queried at times spread over its range.
struct ThirtyPillarCurve {
    std::vector<double> times;
    zep::YieldCurve curve = Build();

    static zep::YieldCurve Build() {
        const zep::Date reference(2, 1, 2024);
        std::vector<zep::Date> dates;
        std::vector<double> rates;
        for (int i = 1; i <= 30; ++i) {
            dates.push_back(reference + i * 365);
            rates.push_back(0.02 + 0.0005 * i);
        }
        return zep::YieldCurve(reference, dates, rates, zep::Continuous, zep::DayCounter(zep::Act365Fixed));
    }
    ThirtyPillarCurve() {
        std::mt19937_64 rng(7);
        std::uniform_real_distribution<double> uniform(0.0, 30.0);
        for (int i = 0; i < 1024; ++i) times.push_back(uniform(rng));
    }
};

void DiscountFactorByTime(benchmark::State& state) {
    const ThirtyPillarCurve data;
    const zep::YieldCurve& curve = data.curve;
    std::size_t i = 0;
    for (auto _ : state) benchmark::DoNotOptimize(curve.DiscountFactor(data.times[i++ & 1023]));
    state.SetItemsProcessed(state.iterations());
}
BENCHMARK(DiscountFactorByTime);

void DiscountFactorArray(benchmark::State& state) {
    const ThirtyPillarCurve data;
    std::vector<double> out(data.times.size());
    for (auto _ : state) {
        data.curve.DiscountFactorArray(data.times.data(), out.data(), out.size());
        benchmark::DoNotOptimize(out.data());
    }
    state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(out.size()));
}
BENCHMARK(DiscountFactorArray);

}  // namespace
