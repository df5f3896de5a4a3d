#include <benchmark/benchmark.h>

#include <cmath>
#include <vector>

#include "lum-interest-rates/CapletVolatilityStrip.hpp"
#include "lum-interest-rates/SwaptionCube.hpp"
#include "lum-interest-rates/SwaptionSmile.hpp"

namespace {

using namespace zep;

// One SABR volatility of a 5y slice, lognormal (Black) or normal (Bachelier) expansion, strikes
// walking across the smile so that no branch is always taken.
void BM_SabrVolatility(benchmark::State& state) {
    const auto model = static_cast<RateVolatilityModel>(state.range(0));
    const double alpha = model == RateVolatilityModel::Bachelier ? 0.009 / std::sqrt(0.03) : 0.2 * std::sqrt(0.03);
    const SwaptionSmile smile(0.03, 5.0, alpha, 0.5, -0.3, 0.4, model);
    double strike = 0.01;
    for (auto _ : state) {
        benchmark::DoNotOptimize(smile.Volatility(strike));
        strike = strike > 0.06 ? 0.01 : strike + 1e-4;
    }
}
BENCHMARK(BM_SabrVolatility)->Arg(0)->Arg(2);

SwaptionCube MakeCube() {
    const std::vector<double> expiries{1, 2, 5, 10}, tenors{2, 5, 10, 30},
        spreads{-0.01, -0.005, 0.0, 0.005, 0.01, 0.02};
    std::vector<double> forwards, vols;
    for (double expiry : expiries)
        for (double tenor : tenors) {
            const double forward = 0.025 + 0.0005 * expiry + 0.0002 * tenor;
            forwards.push_back(forward);
            const SwaptionSmile truth(forward, expiry, 0.2 * std::sqrt(forward), 0.5, -0.3, 0.4);
            for (double spread : spreads) vols.push_back(truth.Volatility(forward + spread));
        }
    return SwaptionCube(expiries, tenors, spreads, forwards, vols);
}

// A volatility between four slices of a 4 x 4 cube.
void BM_SwaptionCubeVolatility(benchmark::State& state) {
    const SwaptionCube cube = MakeCube();
    double strike = 0.02;
    for (auto _ : state) {
        benchmark::DoNotOptimize(cube.Volatility(3.5, 7.0, 0.031, strike));
        strike = strike > 0.05 ? 0.02 : strike + 1e-4;
    }
}
BENCHMARK(BM_SwaptionCubeVolatility);

// The 16 slice fits of that cube.
void BM_SwaptionCubeCalibration(benchmark::State& state) {
    for (auto _ : state) benchmark::DoNotOptimize(MakeCube().FitError());
}
BENCHMARK(BM_SwaptionCubeCalibration)->Unit(benchmark::kMillisecond);

// Caplet volatilities from ten quarterly caps, 1y to 10y (40 caplets).
void BM_CapletStrip(benchmark::State& state) {
    const YieldCurve curve(Date(15, 1, 2024), std::vector<Period>{Period("1Y"), Period("5Y"), Period("10Y")},
                           std::vector<double>{0.031, 0.0295, 0.0312}, Continuous, DayCounter(Act365Fixed));
    ScheduleRules rules;
    rules.centres = "TARGET";
    rules.tenor = Period(3, Months);
    rules.dayCounter = DayCounter(Act360);
    std::vector<CapFloor> caps;
    std::vector<double> flat;
    for (int years = 1; years <= 10; ++years) {
        caps.emplace_back(Schedule(Date(17, 1, 2024), Date(17, 1, 2024 + years), rules, Calendar::Shared()),
                          CapFloorKind::Cap, 0.03, 1.0);
        flat.push_back(0.32 - 0.01 * years);
    }
    for (auto _ : state)
        benchmark::DoNotOptimize(CapletVolatilityStrip(caps, flat, curve, curve, RateVolatilityModel::Black)
                                     .Volatilities()
                                     .back());
}
BENCHMARK(BM_CapletStrip)->Unit(benchmark::kMicrosecond);

}  // namespace
