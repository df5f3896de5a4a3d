#include <benchmark/benchmark.h>

#include <cstdlib>
#include <string>
#include <vector>

#include "lum-auxiliary/ParallelRange.hpp"
#include "lum-interest-rates/Bond.hpp"
#include "lum-interest-rates/CurveBootstrap.hpp"
#include "lum-interest-rates/Swap.hpp"

namespace {

using namespace zep;

const YieldCurve& BootstrappedCurve() {
    static const boost::shared_ptr<YieldCurve> curve = [] {
        std::vector<RateQuote> quotes{{RateInstrument::Deposit, Period(), Period(3, Months), 0.036},
                                      {RateInstrument::Deposit, Period(), Period(6, Months), 0.0365}};
        for (int years : {2, 3, 5, 7, 10, 12, 15})
            quotes.push_back({RateInstrument::Swap, Period(), Period(years, Years), 0.03 + 0.0002 * years});
        return CurveBootstrap(Date(15, 1, 2024), quotes, BootstrapConventions(), Calendar::Shared()).Curve();
    }();
    return *curve;
}

// A 10-year swap: annual 30/360 fixed against quarterly Act/360 floating, from the spot date.
Swap TenYearQuarterlySwap(double fixedRate, int startOffsetDays = 0) {
    const Date start = Date(17, 1, 2024) + startOffsetDays;
    ScheduleRules rules;
    rules.centres = "TARGET";
    rules.tenor = Period(1, Years);
    rules.dayCounter = DayCounter(Thirty360);
    LegTerms fixed;
    fixed.fixedRate = fixedRate;
    const Leg fixedLeg(Schedule(start, start + Period(10, Years), rules, Calendar::Shared()), fixed, Calendar::Shared());
    rules.tenor = Period(3, Months);
    rules.dayCounter = DayCounter(Act360);
    LegTerms floating;
    floating.kind = CouponKind::Floating;
    floating.index = "EURIBOR3M";
    const Leg floatLeg(Schedule(start, start + Period(10, Years), rules, Calendar::Shared()), floating, Calendar::Shared());
    return Swap(floatLeg, fixedLeg);
}

void BM_SwapPV(benchmark::State& state) {
    const YieldCurve& curve = BootstrappedCurve();
    const Swap swap = TenYearQuarterlySwap(0.031);
    const LegMarket market{&curve, &curve};
    for (auto _ : state) benchmark::DoNotOptimize(swap.PV(market, market));
}
BENCHMARK(BM_SwapPV);

void BM_SwapParRate(benchmark::State& state) {
    const YieldCurve& curve = BootstrappedCurve();
    const Swap swap = TenYearQuarterlySwap(0.031);
    const LegMarket market{&curve, &curve};
    for (auto _ : state) benchmark::DoNotOptimize(swap.ParRate(market, market));
}
BENCHMARK(BM_SwapParRate);

// A 10-year mark-to-market cross-currency basis swap, quarterly floating against quarterly
// floating: the received leg's 39 later notionals reset to the FX forward of their period.
void BM_MarkToMarketCrossCurrencySwapPV(benchmark::State& state) {
    const YieldCurve& domestic = BootstrappedCurve();
    const YieldCurve foreign(Date(15, 1, 2024), {Date(15, 1, 2024), Date(15, 1, 2044)}, std::vector<double>{0.025, 0.028},
                             Continuous, DayCounter(Act365Fixed));
    const Date start(17, 1, 2024);
    ScheduleRules rules;
    rules.centres = "TARGET";
    rules.tenor = Period(3, Months);
    rules.dayCounter = DayCounter(Act360);
    const Schedule schedule(start, start + Period(10, Years), rules, Calendar::Shared());
    LegTerms terms;
    terms.kind = CouponKind::Floating;
    terms.index = "DOMESTIC3M";
    terms.notionals = {1.1e6};
    terms.exchangeNotional = true;
    terms.resetIndex = "FX";
    terms.resetNotional = 1e6;
    const Leg resetting(schedule, terms, Calendar::Shared());
    terms.index = "FOREIGN3M";
    terms.notionals = {1e6};
    terms.resetIndex.clear();
    const Swap swap(resetting, Leg(schedule, terms, Calendar::Shared()));
    const FXMarket fx{1.1, Date(15, 1, 2024), &domestic, &foreign};
    LegMarket domesticMarket{&domestic, &domestic};
    domesticMarket.resetFX = &fx;
    const LegMarket foreignMarket{&foreign, &foreign, nullptr, 1.1};
    for (auto _ : state) benchmark::DoNotOptimize(swap.PV(domesticMarket, foreignMarket));
}
BENCHMARK(BM_MarkToMarketCrossCurrencySwapPV);

// A book of 10 000 swaps re-valued on a curve shifted by one basis point, over two threads.
void BM_SwapBookAfterCurveShift(benchmark::State& state) {
    std::vector<Swap> book;
    for (int i = 0; i < 10000; ++i) book.push_back(TenYearQuarterlySwap(0.025 + 1e-6 * i, i % 60));
    YieldCurve shifted = BootstrappedCurve();
    shifted.SetZeroRateSpread(1e-4);
    std::vector<double> values(book.size());
    for (auto _ : state) {
        const LegMarket market{&shifted, &shifted};
        ForEachHalf(book.size(), 64, [&](std::size_t begin, std::size_t end) {
            for (std::size_t i = begin; i < end; ++i) values[i] = book[i].PV(market, market);
        });
        benchmark::DoNotOptimize(values.data());
    }
}
BENCHMARK(BM_SwapBookAfterCurveShift)->Unit(benchmark::kMillisecond)->UseRealTime();

// A 10-year semiannual Treasury-style bond between coupon dates.
void BM_BondYieldFromPrice(benchmark::State& state) {
    ScheduleRules rules;
    rules.tenor = Period(6, Months);
    rules.accrualAdjustment = rules.paymentAdjustment = Unadjusted;
    rules.dayCounter = DayCounter(Act365Fixed);
    BondTerms terms;
    terms.couponRate = 0.045;
    const Bond bond(Schedule(Date(15, 11, 2023), Date(15, 11, 2033), rules, Calendar::Shared()), terms);
    const Date settlement(16, 1, 2024);
    for (auto _ : state) benchmark::DoNotOptimize(bond.Yield(98.75, settlement));
}
BENCHMARK(BM_BondYieldFromPrice);

}  // namespace
