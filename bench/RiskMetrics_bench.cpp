#include <benchmark/benchmark.h>

#include <string>
#include <vector>

#include <boost/make_shared.hpp>

#include "lum-risk-metrics/BondAdapter.hpp"
#include "lum-risk-metrics/Portfolio.hpp"
#include "lum-risk-metrics/SwapAdapter.hpp"

namespace {

using namespace zep;
using namespace zep::metrics;

// A curve of 12 pillars from one month to 30 years.
boost::shared_ptr<const YieldCurve> TwelvePillarCurve() {
    std::vector<Period> tenors;
    std::vector<double> rates;
    for (const char* tenor : {"1M", "3M", "6M", "1Y", "2Y", "3Y", "5Y", "7Y", "10Y", "15Y", "20Y", "30Y"}) {
        tenors.emplace_back(std::string(tenor));
        rates.push_back(0.03 + 0.0004 * static_cast<double>(rates.size()));
    }
    return boost::make_shared<YieldCurve>(Date(15, 1, 2024), tenors, rates, Continuous, DayCounter(Act365Fixed));
}

Schedule ScheduleOf(const Date& start, int years, const char* tenor, DayCounter dayCounter) {
    ScheduleRules rules;
    rules.centres = "TARGET";
    rules.tenor = Period(std::string(tenor));
    rules.dayCounter = dayCounter;
    return Schedule(start, start + Period(years, Years), rules, Calendar::Shared());
}

SwapAdapter TenYearSwap(const boost::shared_ptr<const YieldCurve>& curve) {
    LegTerms fixed;
    fixed.fixedRate = 0.032;
    fixed.notionals = {1e7};
    LegTerms floating;
    floating.kind = CouponKind::Floating;
    floating.index = "EURIBOR6M";
    floating.notionals = {1e7};
    const Date start(17, 1, 2024);
    auto swap = boost::make_shared<Swap>(Leg(ScheduleOf(start, 10, "1Y", DayCounter(Thirty360)), fixed, Calendar::Shared()),
                                         Leg(ScheduleOf(start, 10, "6M", DayCounter(Act360)), floating, Calendar::Shared()));
    return SwapAdapter(swap, {curve, curve, nullptr}, {curve, curve, nullptr});
}

BondAdapter BondMaturingIn(int years, const boost::shared_ptr<const YieldCurve>& curve) {
    BondTerms terms;
    terms.couponRate = 0.025 + 0.001 * years;
    return BondAdapter(boost::make_shared<Bond>(ScheduleOf(Date(15, 6, 2023), years, "6M", DayCounter(Act365Fixed)), terms),
                       curve, 1e6);
}

void SwapDV01(benchmark::State& state) {
    const SwapAdapter swap = TenYearSwap(TwelvePillarCurve());
    for (auto _ : state) benchmark::DoNotOptimize(swap.Compute(Metric::DV01).value);
}
BENCHMARK(SwapDV01)->Unit(benchmark::kMicrosecond);

// One PV up and one down per pillar: 24 revaluations.
void SwapKeyRateDV01(benchmark::State& state) {
    const SwapAdapter swap = TenYearSwap(TwelvePillarCurve());
    for (auto _ : state) benchmark::DoNotOptimize(swap.Profile(Metric::KEY_RATE_DV01).size());
}
BENCHMARK(SwapKeyRateDV01)->Unit(benchmark::kMicrosecond);

// 1 000 bonds of 1 to 30 years on four desks: DV01 summed per desk.
void PortfolioDV01ByDesk(benchmark::State& state) {
    const auto curve = TwelvePillarCurve();
    Portfolio portfolio;
    for (int i = 0; i < 1000; ++i)
        portfolio.Add({"T" + std::to_string(i), boost::make_shared<BondAdapter>(BondMaturingIn(1 + i % 30, curve)), 1.0,
                       {{"desk", "desk " + std::to_string(i % 4)}}});
    for (auto _ : state) benchmark::DoNotOptimize(portfolio.AggregateBy(Metric::DV01, "desk").size());
    state.SetItemsProcessed(state.iterations() * 1000);
}
BENCHMARK(PortfolioDV01ByDesk)->Unit(benchmark::kMillisecond);

}  // namespace
