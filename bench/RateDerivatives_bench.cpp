#include <benchmark/benchmark.h>

#include <vector>

#include <boost/make_shared.hpp>

#include "lum-closed-form/ForwardOption.hpp"
#include "lum-interest-rates/CapFloor.hpp"
#include "lum-interest-rates/CreditDefaultSwap.hpp"
#include "lum-interest-rates/Swaption.hpp"

namespace {

using namespace zep;

const YieldCurve& ZeroCurve() {
    static const YieldCurve curve(Date(15, 1, 2024), std::vector<Period>{Period("1Y"), Period("5Y"), Period("10Y")},
                                  std::vector<double>{0.031, 0.0295, 0.0312}, Continuous, DayCounter(Act365Fixed));
    return curve;
}

Schedule ScheduleOf(const Date& start, const Date& end, Period tenor, DayCounter dayCounter) {
    ScheduleRules rules;
    rules.centres = "TARGET";
    rules.tenor = tenor;
    rules.dayCounter = dayCounter;
    return Schedule(start, end, rules, Calendar::Shared());
}

void BM_CapletBlack(benchmark::State& state) {
    const RateVolatility vol{RateVolatilityModel::Black, 0.25, 0.0};
    double forward = 0.03;
    for (auto _ : state) {
        benchmark::DoNotOptimize(forward);
        benchmark::DoNotOptimize(ForwardOptionValue(true, forward, 0.031, 2.0, vol));
    }
}
BENCHMARK(BM_CapletBlack);

// A 5-year quarterly cap: 20 caplets on one curve.
void BM_CapPV(benchmark::State& state) {
    const CapFloor cap(ScheduleOf(Date(17, 4, 2024), Date(17, 4, 2029), Period(3, Months), DayCounter(Act360)),
                       CapFloorKind::Cap, 0.03, 1e6);
    const RateVolatility vol{static_cast<RateVolatilityModel>(state.range(0)), state.range(0) == 2 ? 0.008 : 0.25, 0.0};
    for (auto _ : state) benchmark::DoNotOptimize(cap.PV(ZeroCurve(), ZeroCurve(), vol));
}
BENCHMARK(BM_CapPV)->Arg(0)->Arg(2);

// 1y into 5y, annual 30/360 fixed against semi-annual Act/360 floating.
void BM_SwaptionPV(benchmark::State& state) {
    const Swaption swaption(ScheduleOf(Date(17, 1, 2025), Date(17, 1, 2030), Period(1, Years), DayCounter(Thirty360)),
                            ScheduleOf(Date(17, 1, 2025), Date(17, 1, 2030), Period(6, Months), DayCounter(Act360)),
                            SwaptionKind::Payer, 0.03, 1e6, Date(15, 1, 2025), SwaptionSettlement::Physical,
                            Calendar::Shared());
    const LegMarket market{&ZeroCurve(), &ZeroCurve()};
    const RateVolatility vol{RateVolatilityModel::Black, 0.25, 0.0};
    for (auto _ : state) benchmark::DoNotOptimize(swaption.PV(market, vol));
}
BENCHMARK(BM_SwaptionPV);

// A 5-year CDS on a curve of seven quotes, quarterly premiums.
void BM_CdsParSpread(benchmark::State& state) {
    const Date today(20, 3, 2024);
    std::vector<Period> tenors;
    for (const char* tenor : {"6M", "1Y", "2Y", "3Y", "5Y", "7Y", "10Y"}) tenors.emplace_back(tenor);
    const auto discount = boost::make_shared<YieldCurve>(ZeroCurve());
    const CreditCurve credit(today, tenors, {0.005, 0.006, 0.0075, 0.009, 0.011, 0.012, 0.0125}, 0.4, discount,
                             CreditConventions(), Calendar::Shared());
    const CreditDefaultSwap cds(ScheduleOf(today, Date(20, 3, 2029), Period(3, Months), DayCounter(Act360)),
                                CdsSide::Buyer, 0.01, 1e7, 0.4);
    for (auto _ : state) benchmark::DoNotOptimize(cds.ParSpread(credit, *discount));
}
BENCHMARK(BM_CdsParSpread);

}  // namespace
