#include <benchmark/benchmark.h>

#include <vector>

#include <boost/make_shared.hpp>

#include "lum-interest-rates/BermudanSwaption.hpp"
#include "lum-interest-rates/CallableBond.hpp"
#include "lum-interest-rates/HullWhiteSwap.hpp"

namespace {

using namespace zep;

HullWhite Model() {
    static const auto curve = boost::make_shared<const YieldCurve>(
        Date(15, 1, 2024), std::vector<Period>{Period("1Y"), Period("5Y"), Period("10Y"), Period("20Y")},
        std::vector<double>{0.031, 0.0295, 0.0312, 0.033}, Continuous, DayCounter(Act365Fixed));
    return HullWhite(curve, 0.05, 0.01);
}

// 1y into 10y annual: ten periods, each start an exercise date of the Bermudan.
HullWhiteSwap TenYearSwap() {
    HullWhiteSwap swap;
    for (int i = 0; i < 10; ++i) {
        swap.starts.push_back(1.0 + i);
        swap.payments.push_back(2.0 + i);
        swap.accruals.push_back(1.0);
    }
    swap.strike = 0.031;
    swap.isPayer = false;
    return swap;
}

void BM_HullWhiteBondOption(benchmark::State& state) {
    const HullWhite model = Model();
    double strike = 0.9;
    for (auto _ : state) {
        benchmark::DoNotOptimize(strike);
        benchmark::DoNotOptimize(model.DiscountBondOption(true, strike, 2.0, 7.0));
    }
}
BENCHMARK(BM_HullWhiteBondOption);

void BM_JamshidianSwaption1y10y(benchmark::State& state) {
    const HullWhite model = Model();
    const HullWhiteSwap swap = TenYearSwap();
    for (auto _ : state) benchmark::DoNotOptimize(JamshidianSwaption(model, swap, 1.0));
}
BENCHMARK(BM_JamshidianSwaption1y10y);

// Ten exercise dates on a 200-step tree: building the tree (fitting it to the curve) and pricing.
void BM_BermudanSwaption10Exercises200Steps(benchmark::State& state) {
    const HullWhite model = Model();
    const HullWhiteSwap swap = TenYearSwap();
    const std::vector<double> exercises{1, 2, 3, 4, 5, 6, 7, 8, 9, 10};
    for (auto _ : state) benchmark::DoNotOptimize(BermudanSwaption(model, swap, exercises, 200).PV());
}
BENCHMARK(BM_BermudanSwaption10Exercises200Steps)->Unit(benchmark::kMicrosecond);

// The price alone, on a tree already built: what a second query of the same option costs.
void BM_BermudanSwaptionInduction(benchmark::State& state) {
    const BermudanSwaption bermudan(Model(), TenYearSwap(), {1, 2, 3, 4, 5, 6, 7, 8, 9, 10}, 200);
    for (auto _ : state) benchmark::DoNotOptimize(bermudan.PV());
}
BENCHMARK(BM_BermudanSwaptionInduction)->Unit(benchmark::kMicrosecond);

// A 10-year 4% annual bond callable at par on each coupon date from year 3, 200-step tree.
CallableBond TenYearCallable() {
    HullWhiteSwap coupons = TenYearSwap();
    for (double& start : coupons.starts) start -= 1.0;
    for (double& payment : coupons.payments) payment -= 1.0;
    coupons.strike = 0.04;
    coupons.notional = 100.0;
    return CallableBond(Model(), coupons, {3, 4, 5, 6, 7, 8, 9}, std::vector<double>(7, 100.0), 200);
}

void BM_CallableBondBuildAndPrice(benchmark::State& state) {
    for (auto _ : state) benchmark::DoNotOptimize(TenYearCallable().CleanPrice());
}
BENCHMARK(BM_CallableBondBuildAndPrice)->Unit(benchmark::kMicrosecond);

// The spread from a price on a built tree: a root search of backward inductions.
void BM_CallableBondOAS(benchmark::State& state) {
    const CallableBond bond = TenYearCallable();
    const double price = bond.CleanPrice(0.0075);
    for (auto _ : state) benchmark::DoNotOptimize(bond.OAS(price));
}
BENCHMARK(BM_CallableBondOAS)->Unit(benchmark::kMicrosecond);

}  // namespace
