#include <benchmark/benchmark.h>

#include <vector>

#include "lum-interest-rates/YearOnYearInflationSwap.hpp"
#include "lum-interest-rates/ZeroCouponInflationSwap.hpp"
#include "lum-interest-rates/ZeroInflationCurve.hpp"

namespace {

using namespace zep;

const Date kReference(20, 3, 2024);

// Two years of monthly fixings up to January 2024.
FixingStore Fixings() {
    FixingStore fixings;
    double level = 100.0;
    for (Date month(1, 1, 2022); month <= Date(1, 1, 2024); month = month.Advance(1, Months), level *= 1.004)
        fixings.Add("CPI", month, level);
    return fixings;
}

ZeroInflationCurve CurveOf(InflationInterpolation interpolation) {
    InflationIndexConventions conventions;
    conventions.index = "CPI";
    conventions.interpolation = interpolation;
    const std::vector<Period> tenors{Period("1Y"), Period("2Y"), Period("3Y"), Period("5Y"),
                                     Period("7Y"), Period("10Y"), Period("15Y")};
    return ZeroInflationCurve(kReference, conventions, tenors, {0.021, 0.0235, 0.024, 0.0238, 0.0245, 0.025, 0.026},
                              Fixings());
}

const ZeroInflationCurve& LinearCurve() {
    static const ZeroInflationCurve curve = CurveOf(InflationInterpolation::Linear);
    return curve;
}

const YieldCurve& Discount() {
    static const YieldCurve curve(kReference, std::vector<Period>{Period("1Y"), Period("5Y"), Period("10Y")},
                                  std::vector<double>{0.03, 0.031, 0.033}, Continuous, DayCounter(Act365Fixed));
    return curve;
}

// Seven quotes, each solved for the level of the month it observes.
void BM_ZeroInflationBootstrap(benchmark::State& state) {
    const auto interpolation = static_cast<InflationInterpolation>(state.range(0));
    for (auto _ : state) benchmark::DoNotOptimize(CurveOf(interpolation));
}
BENCHMARK(BM_ZeroInflationBootstrap)->Arg(0)->Arg(1);

void BM_ReferenceIndexLinear(benchmark::State& state) {
    Date date(17, 8, 2031);
    for (auto _ : state) {
        benchmark::DoNotOptimize(date);
        benchmark::DoNotOptimize(LinearCurve().ReferenceIndex(date));
    }
}
BENCHMARK(BM_ReferenceIndexLinear);

void BM_ZeroCouponInflationSwapPV(benchmark::State& state) {
    const ZeroCouponInflationSwap swap(SwapSide::Pay, 1e6, 0.024, kReference, Date(20, 3, 2031), Date(20, 3, 2031));
    for (auto _ : state) benchmark::DoNotOptimize(swap.PV(LinearCurve(), Discount()));
}
BENCHMARK(BM_ZeroCouponInflationSwapPV);

// Ten annual periods.
void BM_YearOnYearInflationSwapPV(benchmark::State& state) {
    ScheduleRules rules;
    rules.tenor = Period(1, Years);
    rules.centres = "TARGET";
    rules.fixingLagDays = 0;
    rules.dayCounter = DayCounter(Thirty360);
    const YearOnYearInflationSwap swap(SwapSide::Pay, 1e6, 0.024,
                                       Schedule(kReference, Date(20, 3, 2034), rules, Calendar::Shared()));
    for (auto _ : state) benchmark::DoNotOptimize(swap.PV(LinearCurve(), Discount()));
}
BENCHMARK(BM_YearOnYearInflationSwapPV);

}  // namespace
