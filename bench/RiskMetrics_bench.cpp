#include <benchmark/benchmark.h>

#include <cstdlib>
#include <random>
#include <string>
#include <vector>

#include <boost/make_shared.hpp>

#include "lum-risk-metrics/BondAdapter.hpp"
#include "lum-risk-metrics/FXForwardAdapter.hpp"
#include "lum-risk-metrics/HistoricalVaR.hpp"
#include "lum-risk-metrics/Portfolio.hpp"
#include "lum-risk-metrics/ScenarioRevaluation.hpp"
#include "lum-risk-metrics/SwapAdapter.hpp"
#include "lum-risk-metrics/VanillaOptionAdapter.hpp"

namespace {

using namespace zep;
using namespace zep::metrics;
using namespace zep::scenario;

constexpr const char* kTenors[] = {"1M", "3M", "6M", "1Y", "2Y", "3Y", "5Y", "7Y", "10Y", "15Y", "20Y", "30Y"};

// A curve of 12 pillars from one month to 30 years; scenarios name it by its label.
boost::shared_ptr<const YieldCurve> TwelvePillarCurve(const std::string& label = "", double level = 0.03) {
    std::vector<Period> tenors;
    std::vector<double> rates;
    for (const char* tenor : kTenors) {
        tenors.emplace_back(std::string(tenor));
        rates.push_back(level + 0.0004 * static_cast<double>(rates.size()));
    }
    return boost::make_shared<YieldCurve>(Date(15, 1, 2024), tenors, rates, Continuous, DayCounter(Act365Fixed),
                                          ContinuousZeroRates, LinearInterpolation, label);
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

boost::shared_ptr<const InstrumentAdapter> ForwardMaturingIn(int months, const boost::shared_ptr<const YieldCurve>& usd,
                                                             const boost::shared_ptr<const YieldCurve>& eur) {
    return boost::make_shared<FXForwardAdapter>(
        boost::make_shared<FXForward>(1, 1e6, 1.09, Date(17, 1, 2024) + Period(months, Months)),
        FXForwardMarket{1.08, Date(17, 1, 2024), usd, eur, std::nullopt, 1e4, "EURUSD"});
}

boost::shared_ptr<const InstrumentAdapter> CallMaturingIn(int months, double strike) {
    VanillaOption::Terms terms;
    terms.faceValue = 1e6;
    terms.strike = strike;
    terms.referenceDate = Date(15, 1, 2024);
    terms.expiryDate = terms.referenceDate + Period(months, Months);
    terms.settlementDate = terms.deliveryDate = terms.expiryDate + Period(2, Days);
    return boost::make_shared<VanillaOptionAdapter>(
        boost::make_shared<VanillaOption>(terms, 1.08, VanillaOption::Carry::Rates(0.04, 0.03),
                                          boost::make_shared<FlatVolatility>(0.09)),
        "EURUSD");
}

// 1 000 trades, a quarter each: EUR bonds of 1 to 30 years, 10-year swaps on EUR or USD, EURUSD
// forwards of 1 to 24 months and EURUSD calls of 1 to 24 months.
Portfolio MixedBook() {
    const auto eur = TwelvePillarCurve("EUR", 0.03), usd = TwelvePillarCurve("USD", 0.04);
    Portfolio portfolio;
    for (int i = 0; i < 1000; ++i) {
        boost::shared_ptr<const InstrumentAdapter> trade;
        switch (i % 4) {
            case 0: trade = boost::make_shared<BondAdapter>(BondMaturingIn(1 + i % 30, eur)); break;
            case 1: trade = boost::make_shared<SwapAdapter>(TenYearSwap(i % 8 == 1 ? eur : usd)); break;
            case 2: trade = ForwardMaturingIn(1 + i % 24, usd, eur); break;
            default: trade = CallMaturingIn(1 + i % 24, 1.0 + 0.0002 * i); break;
        }
        portfolio.Add({"T" + std::to_string(i), trade, i % 3 == 0 ? -1.0 : 1.0, {{"desk", "desk " + std::to_string(i % 4)}}});
    }
    return portfolio;
}

// 501 days of random walks: the 12 zero rates of each of `curves`, and, unless `ratesOnly`,
// the EURUSD spot (relative returns) and its volatility.
FactorHistory SyntheticHistory(const std::vector<std::string>& curves, bool ratesOnly) {
    FactorHistory history;
    std::vector<double> today;
    for (const std::string& curve : curves)
        for (std::size_t pillar = 0; pillar < std::size(kTenors); ++pillar) {
            history.factors.push_back(Shock::Curve(curve, YieldCurveFactor::KEY_RATE, 0.0, pillar));
            today.push_back(0.03 + 0.0004 * static_cast<double>(pillar));
        }
    if (!ratesOnly) {
        history.factors.push_back(Shock::Spot("EURUSD", FXForwardFactor::SPOT_SHOCK, 0.0, ShockType::RELATIVE));
        history.factors.push_back(Shock::Vol("EURUSD", VolSurfaceFactor::ATM_VOL_LEVEL, 0.0, ShockType::ABSOLUTE));
        today.push_back(1.08);
        today.push_back(0.09);
    }
    std::mt19937_64 generator(2024);
    std::normal_distribution<double> normal(0.0, 1.0);
    history.levels.push_back(today);
    for (int day = 0; day < 500; ++day) {
        for (std::size_t f = 0; f < today.size(); ++f) {
            const Shock& factor = history.factors[f];
            if (factor.family == FactorFamily::YIELD_CURVE) today[f] += 5e-4 * normal(generator);
            else if (factor.family == FactorFamily::FX) today[f] *= 1.0 + 0.006 * normal(generator);
            else today[f] = std::max(0.01, today[f] + 0.003 * normal(generator));
        }
        history.levels.push_back(today);
    }
    return history;
}

// The whole historical VaR run: 500 scenarios, every trade revalued in full under each, on the
// given number of revaluation threads (wall time: the work is not on the timing thread alone).
void HistoricalVaROfAMixedBook(benchmark::State& state) {
    setenv("ZEP_NUM_THREADS", std::to_string(state.range(0)).c_str(), 1);
    const Portfolio portfolio = MixedBook();
    const FactorHistory history = SyntheticHistory({"EUR", "USD"}, false);
    for (auto _ : state)
        benchmark::DoNotOptimize(HistoricalVaR(portfolio, history, {0.95, 0.99}, "desk").figures.size());
    state.SetItemsProcessed(state.iterations() * 1000 * 500);
    unsetenv("ZEP_NUM_THREADS");
}
BENCHMARK(HistoricalVaROfAMixedBook)->ArgName("threads")->Arg(1)->Arg(2)->UseRealTime()->Unit(benchmark::kMillisecond);

// 500 EUR and 500 USD bonds under 500 days of moves of the EUR curve only, then of both: the
// scenarios that leave the USD curve alone do not price the USD bonds.
void BondsUnderCurveScenarios(benchmark::State& state) {
    const auto eur = TwelvePillarCurve("EUR", 0.03), usd = TwelvePillarCurve("USD", 0.04);
    Portfolio portfolio;
    for (int i = 0; i < 1000; ++i)
        portfolio.Add({"T" + std::to_string(i), boost::make_shared<BondAdapter>(BondMaturingIn(1 + i % 30, i % 2 ? usd : eur)),
                       1.0, {}});
    const std::vector<std::string> moved = state.range(0) ? std::vector<std::string>{"EUR", "USD"}
                                                          : std::vector<std::string>{"EUR"};
    const std::vector<Scenario> scenarios = HistoricalScenarios(SyntheticHistory(moved, true));
    setenv("ZEP_NUM_THREADS", "1", 1);  // the saving on one thread, where CPU time is the whole cost
    for (auto _ : state) benchmark::DoNotOptimize(Revalue(portfolio, scenarios).values.size());
    state.SetItemsProcessed(state.iterations() * 1000 * 500);
    unsetenv("ZEP_NUM_THREADS");
}
BENCHMARK(BondsUnderCurveScenarios)->ArgName("bothCurves")->Arg(0)->Arg(1)->Unit(benchmark::kMillisecond);

}  // namespace
