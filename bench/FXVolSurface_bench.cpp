#include <benchmark/benchmark.h>

#include <random>
#include <vector>

#include <boost/make_shared.hpp>

#include "lum-fxo-market/FXVolSurface.hpp"

namespace {

// A EUR/USD market of 10 expiries and 5 quotes (ATM, 25 and 10-delta RR and BF).
const zep::Date kReference(16, 11, 2026);
const std::vector<zep::Period> kTenors{zep::Period("1W"), zep::Period("2W"), zep::Period("1M"),
                                       zep::Period("2M"), zep::Period("3M"), zep::Period("6M"),
                                       zep::Period("9M"), zep::Period("1Y"), zep::Period("18M"),
                                       zep::Period("2Y")};
const std::vector<std::string> kLabels{"ATM", "25RR", "25BF", "10RR", "10BF"};

std::vector<std::vector<double>> Quotes() {
    std::vector<std::vector<double>> quotes;
    for (std::size_t i = 0; i < kTenors.size(); ++i) {
        const double x = static_cast<double>(i);
        quotes.push_back({0.070 + 0.0015 * x, -0.002 - 0.0004 * x, 0.0018 + 0.0001 * x,
                          -0.0036 - 0.0007 * x, 0.006 + 0.0004 * x});
    }
    return quotes;
}

boost::shared_ptr<const zep::YieldCurve> Flat(double rate) {
    return boost::make_shared<zep::YieldCurve>(kReference, std::vector<zep::Date>{zep::Date(16, 11, 2027), zep::Date(16, 11, 2036)},
                                               std::vector<double>{rate, rate}, zep::Continuous,
                                               zep::DayCounter(zep::Act365Fixed));
}

zep::FXVolSurface Build(int mode, int premiumAdjusted = zep::PremiumExcluded) {
    zep::FXVolConventions conventions;
    conventions.expiryDates = {kReference + zep::Period("1Y"), kReference + zep::Period("2Y")};
    conventions.deltaTypes = {zep::SpotDelta, zep::ForwardDelta};
    conventions.premiumAdjusted = {premiumAdjusted, premiumAdjusted};
    conventions.atmTypes = {zep::ATMDeltaNeutral, zep::ATMDeltaNeutral};
    return zep::FXVolSurface(kReference, kReference + 2, 1.085, kTenors, kLabels, Quotes(), Flat(0.043),
                             Flat(0.026), conventions, mode);
}

// Building includes solving all 50 pillar strikes (and the fit for the parametric modes).
void BuildSurface(benchmark::State& state) {
    const int mode = static_cast<int>(state.range(0));
    const int premium = static_cast<int>(state.range(1));
    for (auto _ : state) benchmark::DoNotOptimize(Build(mode, premium));
}
BENCHMARK(BuildSurface)
    ->ArgNames({"mode", "premiumAdjusted"})
    ->Args({zep::SmileLinear, 0})
    ->Args({zep::SmileLinear, 1})
    ->Args({zep::SmileCubicSpline, 0})
    ->Args({zep::SmileSVI, 0})
    ->Args({zep::SmileSABR, 0})
    ->Unit(benchmark::kMicrosecond);

// One volatility at an arbitrary (expiry, strike), the points spread over the whole surface.
void GetVolatility(benchmark::State& state) {
    const zep::FXVolSurface surface = Build(static_cast<int>(state.range(0)));
    std::mt19937_64 rng(11);
    std::uniform_real_distribution<double> times(0.01, 2.2), strikes(0.95, 1.25);
    std::vector<double> t(1024), k(1024);
    for (std::size_t i = 0; i < t.size(); ++i) {
        t[i] = times(rng);
        k[i] = strikes(rng);
    }
    std::size_t i = 0;
    for (auto _ : state) {
        benchmark::DoNotOptimize(surface.GetVolatility(t[i & 1023], k[i & 1023]));
        ++i;
    }
    state.SetItemsProcessed(state.iterations());
}
BENCHMARK(GetVolatility)->ArgName("mode")->Arg(zep::SmileLinear)->Arg(zep::SmileCubicSpline)->Arg(zep::SmileSVI)->Arg(zep::SmileSABR);

}  // namespace
