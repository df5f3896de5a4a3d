#include <benchmark/benchmark.h>

#include <cmath>
#include <vector>

#include <boost/make_shared.hpp>

#include "lum-fxo-market/FXLocalVolSurface.hpp"
#include "lum-fxo-market/FXVolSurface.hpp"
#include "zep-pde/DupireForwardPde.hpp"

namespace {

// One forward solve: calls for every strike of the grid at four expiries out to two years.
const std::vector<double> kExpiries{0.25, 0.5, 1.0, 2.0};

// A smile given in closed form, so the figure is the finite-difference core's own cost.
void DupireForwardPdeAnalyticSmile(benchmark::State& state) {
    const double spot = 1.085;
    const zep::DupireMarket market{
        [=](double t, double k) { return 0.08 + 0.2 * std::pow(std::log(k / spot), 2) + 0.005 * t; },
        [=](double t) { return spot * std::exp(0.017 * t); }, [](double t) { return std::exp(-0.043 * t); }};
    const int nodes = static_cast<int>(state.range(0)), steps = static_cast<int>(state.range(1));
    for (auto _ : state) benchmark::DoNotOptimize(zep::DupireForwardPde(market, kExpiries, 0, nodes, steps));
}
BENCHMARK(DupireForwardPdeAnalyticSmile)
    ->ArgNames({"strikes", "steps"})
    ->Args({200, 100})
    ->Args({400, 200})
    ->Args({800, 400})
    ->Unit(benchmark::kMillisecond);

boost::shared_ptr<const zep::YieldCurve> Flat(const zep::Date& reference, double rate) {
    return boost::make_shared<zep::YieldCurve>(reference, std::vector<zep::Date>{reference + zep::Period("1Y"), reference + zep::Period("10Y")},
                                               std::vector<double>{rate, rate}, zep::Continuous,
                                               zep::DayCounter(zep::Act365Fixed));
}

// The local volatility of an SVI EUR/USD surface (6 expiries, 25 and 10-delta quotes), read
// afresh at every node and step: Dupire's formula on the surface's total variance.
void DupireForwardPdeSviSurface(benchmark::State& state) {
    const zep::Date reference(16, 11, 2026);
    const std::vector<zep::Period> tenors{zep::Period("1W"), zep::Period("1M"), zep::Period("3M"),
                                          zep::Period("6M"), zep::Period("1Y"), zep::Period("2Y")};
    const std::vector<std::vector<double>> quotes{
        {0.0720, -0.0020, 0.0018, -0.0036, 0.0060}, {0.0750, -0.0030, 0.0020, -0.0055, 0.0068},
        {0.0780, -0.0040, 0.0022, -0.0072, 0.0075}, {0.0800, -0.0045, 0.0024, -0.0082, 0.0082},
        {0.0820, -0.0050, 0.0026, -0.0090, 0.0090}, {0.0840, -0.0052, 0.0027, -0.0095, 0.0095}};
    const auto surface = boost::make_shared<const zep::FXVolSurface>(
        reference, reference, 1.085, tenors, std::vector<std::string>{"ATM", "25RR", "25BF", "10RR", "10BF"}, quotes,
        Flat(reference, 0.043), Flat(reference, 0.026), zep::FXVolConventions(), zep::SmileSVI);
    const zep::DupireMarket market = zep::FXLocalVolSurface(surface).ForwardEquationMarket();
    const int nodes = static_cast<int>(state.range(0)), steps = static_cast<int>(state.range(1));
    for (auto _ : state) benchmark::DoNotOptimize(zep::DupireForwardPde(market, kExpiries, 0, nodes, steps));
}
BENCHMARK(DupireForwardPdeSviSurface)
    ->ArgNames({"strikes", "steps"})
    ->Args({200, 100})
    ->Args({400, 200})
    ->Unit(benchmark::kMillisecond);

}  // namespace
