#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <string>
#include <thread>
#include <vector>

#include <boost/make_shared.hpp>

#include "FailureText.hpp"
#include "ScopedEnv.hpp"
#include "lum-risk-metrics/BondAdapter.hpp"
#include "lum-risk-metrics/FXForwardAdapter.hpp"
#include "lum-risk-metrics/HistoricalVaR.hpp"
#include "lum-risk-metrics/ScenarioRevaluation.hpp"
#include "lum-risk-metrics/ShockedMarket.hpp"

namespace zep::scenario {
namespace {

using metrics::Metric;
using zep::testing::FailureText;
using zep::testing::ScopedEnv;

Date D(const char* text) { return Date(std::string(text)); }

const Date kToday = D("2024-01-15");
const std::vector<Date> kPillars{D("2024-01-15"), D("2025-01-15"), D("2027-01-15"), D("2034-01-15")};

boost::shared_ptr<const YieldCurve> Curve(const std::string& label, double level) {
    const std::vector<double> rates{level, level + 0.001, level + 0.002, level + 0.004};
    return boost::make_shared<YieldCurve>(kToday, kPillars, rates, Continuous, DayCounter(Act365Fixed),
                                          ContinuousZeroRates, LinearInterpolation, label);
}

boost::shared_ptr<const metrics::InstrumentAdapter> BondOn(const boost::shared_ptr<const YieldCurve>& curve) {
    BondTerms terms;
    terms.couponRate = 0.04;
    ScheduleRules rules;
    rules.tenor = Period(std::string("1Y"));
    rules.dayCounter = DayCounter(Act365Fixed);
    const Schedule schedule(D("2023-06-15"), D("2031-06-15"), rules, Calendar::Shared());
    return boost::make_shared<metrics::BondAdapter>(boost::make_shared<Bond>(schedule, terms), curve, 1e6);
}

boost::shared_ptr<const metrics::InstrumentAdapter> ForwardOn(double spot, const std::string& pair) {
    return boost::make_shared<metrics::FXForwardAdapter>(
        boost::make_shared<FXForward>(1, 1e6, 1.10, D("2025-01-17")),
        metrics::FXForwardMarket{spot, D("2024-01-17"), Curve("USD", 0.04), Curve("EUR", 0.03), std::nullopt, 1e4, pair});
}

double PnL(const metrics::Portfolio& portfolio, std::vector<Shock> shocks) {
    return Revalue(portfolio, {Scenario("test", std::move(shocks))}).Total().front();
}

struct TailCase {
    double confidence;
    double valueAtRisk;
    double expectedShortfall;
    std::size_t scenario;
};

class TailOfTenPnLs : public ::testing::TestWithParam<TailCase> {};

// Sorted from the worst: -10 (scenario 3), -7 (7), -3 (1), -1 (5), 0, 1, 2, 4, 5, 6.
TEST_P(TailOfTenPnLs, VaRIsTheLossAtRankCeilOfTheTailShare) {
    const std::vector<double> pnl{5, -3, 2, -10, 0, -1, 4, -7, 1, 6};
    const TailCase expected = GetParam();
    const TailFigures tail = Tail(pnl, expected.confidence);
    EXPECT_DOUBLE_EQ(tail.valueAtRisk, expected.valueAtRisk) << expected.confidence;
    EXPECT_DOUBLE_EQ(tail.expectedShortfall, expected.expectedShortfall) << expected.confidence;
    EXPECT_EQ(tail.scenario, expected.scenario) << expected.confidence;
}

INSTANTIATE_TEST_SUITE_P(Confidences, TailOfTenPnLs,
                         ::testing::Values(TailCase{0.95, 10, 10, 3}, TailCase{0.9, 10, 10, 3},
                                           TailCase{0.8, 7, 8.5, 7}, TailCase{0.75, 3, 20.0 / 3, 1},
                                           TailCase{0.6, 1, 5.25, 5}));

TEST(ValueAtRisk, AWholeTailShareIsNotPushedUpARankByBinaryRounding) {
    EXPECT_EQ(VaRRank(0.99, 500), 5u);
    EXPECT_EQ(VaRRank(0.95, 500), 25u);
    EXPECT_EQ(VaRRank(0.975, 250), 7u);  // 6.25 rounds up
    EXPECT_EQ(VaRRank(0.9999, 10), 1u);
}

TEST(ValueAtRisk, AConfidenceOutsideTheOpenUnitIntervalIsRefused) {
    for (double confidence : {0.0, 1.0, -0.1, 1.5, std::numeric_limits<double>::quiet_NaN()})
        EXPECT_THROW(VaRRank(confidence, 10), std::invalid_argument) << confidence;
    EXPECT_EQ(FailureText([] { VaRRank(1.5, 10); }), "The confidence level 1.5 is outside (0, 1).");
}

TEST(ShockedMarket, ParallelRelativeShocksAddAndSequentialOnesCompound) {
    const std::vector<Shock> shocks{Shock::Spot("EURUSD", FXForwardFactor::SPOT_SHOCK, 0.10, ShockType::RELATIVE),
                                    Shock::Spot("EURUSD", FXForwardFactor::SPOT_SHOCK, 0.10, ShockType::RELATIVE),
                                    Shock::Spot("EURUSD", FXForwardFactor::SPOT_SHOCK, 5.0, ShockType::ABSOLUTE)};
    const ShockedMarket parallel(Scenario("p", shocks, ScenarioType::CUSTOM, ScenarioGroupApplyMode::PARALLEL));
    const ShockedMarket sequential(Scenario("s", shocks, ScenarioType::CUSTOM, ScenarioGroupApplyMode::SEQUENTIAL));
    EXPECT_DOUBLE_EQ(parallel.Spot("EURUSD", 100.0), 125.0);
    EXPECT_DOUBLE_EQ(sequential.Spot("EURUSD", 100.0), 126.0);
    EXPECT_DOUBLE_EQ(parallel.Spot("USDJPY", 150.0), 150.0);
    EXPECT_DOUBLE_EQ(parallel.Volatility("EURUSD", 0.1), 0.1);
}

TEST(ShockedMarket, AShockThatLeavesAVolatilityNegativeIsRefused) {
    const ShockedMarket market(
        Scenario("crash", {Shock::Vol("EURUSD", VolSurfaceFactor::ATM_VOL_LEVEL, -0.2, ShockType::ABSOLUTE)}));
    EXPECT_THROW(market.Volatility("EURUSD", 0.1), std::invalid_argument);
}

TEST(Shock, FactorsWithoutAShockAreRefusedByName) {
    EXPECT_EQ(FailureText([] { Shock::Vol("EURUSD", VolSurfaceFactor::VOL_SMILE_SHIFT, 0.01, ShockType::ABSOLUTE); }),
              "The factor VOL_SMILE_SHIFT is not supported as a shock: ATM_VOL_LEVEL, RISK_REVERSAL_25D and "
              "BUTTERFLY_25D are.");
    EXPECT_THROW(Shock::Spot("", FXForwardFactor::SPOT_SHOCK, 0.01, ShockType::RELATIVE), std::invalid_argument);
    EXPECT_THROW(Shock::Vol("EURUSD", VolSurfaceFactor::ATM_VOL_LEVEL,
                                   std::numeric_limits<double>::infinity(), ShockType::ABSOLUTE), std::invalid_argument);
}

// DV01 is the central difference of PV under 1bp parallel moves; so is the scenario P&L's.
TEST(Revalue, ParallelOneBasisPointScenariosReproduceDV01) {
    metrics::Portfolio portfolio;
    portfolio.Add({"bond", BondOn(Curve("EUR", 0.03)), 1.0, {}});
    const double up = PnL(portfolio, {Shock::Curve("EUR", YieldCurveFactor::LEVEL, 1.0)});
    const double down = PnL(portfolio, {Shock::Curve("EUR", YieldCurveFactor::LEVEL, -1.0)});
    const double dv01 = portfolio.Aggregate(Metric::DV01).Value();
    EXPECT_NEAR((up - down) / 2, dv01, 1e-9 * std::abs(dv01));
    EXPECT_NEAR(up, dv01, 1e-3 * std::abs(dv01));  // one-sided: convexity is second order
}

TEST(Revalue, KeyRateScenariosReproduceTheKeyRateDV01OfTheirPillar) {
    const auto bond = BondOn(Curve("EUR", 0.03));
    metrics::Portfolio portfolio;
    portfolio.Add({"bond", bond, 2.0, {}});
    const auto profile = bond->Profile(Metric::KEY_RATE_DV01);
    for (std::size_t pillar = 0; pillar < kPillars.size(); ++pillar) {
        const double up = PnL(portfolio, {Shock::Curve("EUR", YieldCurveFactor::KEY_RATE, 1.0, pillar)});
        const double down = PnL(portfolio, {Shock::Curve("EUR", YieldCurveFactor::KEY_RATE, -1.0, pillar)});
        EXPECT_NEAR((up - down) / 2, 2.0 * profile[pillar].Value(), 1e-9 * std::abs(profile[pillar].Value()) + 1e-9)
            << pillar;
    }
}

TEST(Revalue, ATradeTheScenarioDoesNotTouchHasNoPnLAndUnknownNamesAreRefused) {
    metrics::Portfolio portfolio;
    portfolio.Add({"bond", BondOn(Curve("GBP", 0.04)), 1.0, {}});
    portfolio.Add({"forward", ForwardOn(1.08, "EURUSD"), 1.0, {}});
    const ScenarioPnL pnl =
        Revalue(portfolio, {Scenario("spot", {Shock::Spot("EURUSD", FXForwardFactor::SPOT_SHOCK, 0.01, ShockType::RELATIVE)})});
    EXPECT_EQ(pnl.At(0, 0), 0.0);
    EXPECT_NE(pnl.At(1, 0), 0.0);
    EXPECT_EQ(FailureText([&] { PnL(portfolio, {Shock::Curve("JPY", YieldCurveFactor::LEVEL, 1.0)}); }),
              "Scenario 'test' shocks JPY LEVEL, but no trade of the portfolio reads 'JPY'.");
    EXPECT_THROW(PnL(portfolio, {Shock::Curve("GBP", YieldCurveFactor::KEY_RATE, 1.0, 9)}), std::runtime_error);
}

FactorHistory SpotAndRateHistory() {
    return {{Shock::Spot("EURUSD", FXForwardFactor::SPOT_SHOCK, 0.0, ShockType::RELATIVE),
             Shock::Curve("GBP", YieldCurveFactor::LEVEL, 0.0)},
            {{1.00, 0.0400}, {1.02, 0.0410}, {0.99, 0.0395}, {1.01, 0.0395}}};
}

TEST(HistoricalScenarios, EachDayMovesEachFactorByItsReturnFromThePreviousDay) {
    const auto scenarios = HistoricalScenarios(SpotAndRateHistory());
    ASSERT_EQ(scenarios.size(), 3u);
    EXPECT_EQ(scenarios[1].Name(), "day 2");
    EXPECT_EQ(scenarios[1].Type(), ScenarioType::HISTORICAL);
    EXPECT_NEAR(scenarios[1].Shocks()[0].size, 0.99 / 1.02 - 1.0, 1e-15);
    EXPECT_NEAR(scenarios[0].Shocks()[1].size, 10.0, 1e-9);  // 0.0400 -> 0.0410 is 10bp
    EXPECT_NEAR(scenarios[1].Shocks()[1].size, -15.0, 1e-9);
}

TEST(HistoricalScenarios, GapsNonNumbersAndShortHistoriesAreRefused) {
    FactorHistory history = SpotAndRateHistory();
    history.levels[2][0] = std::numeric_limits<double>::quiet_NaN();
    EXPECT_EQ(FailureText([&] { HistoricalScenarios(history); }),
              "The history of EURUSD SPOT_SHOCK has a gap or a non-number on day 2.");
    history = SpotAndRateHistory();
    history.levels[1].pop_back();
    EXPECT_EQ(FailureText([&] { HistoricalScenarios(history); }), "Day 1 of the history has 1 levels for 2 factors.");
    history = SpotAndRateHistory();
    history.levels.resize(1);
    EXPECT_THROW(HistoricalScenarios(history), std::invalid_argument);
    history = SpotAndRateHistory();
    history.levels[0][0] = 0.0;
    EXPECT_THROW(HistoricalScenarios(history), std::invalid_argument);
}

TEST(HistoricalVaR, ComponentsByTagAddUpToTheVaR) {
    metrics::Portfolio portfolio;
    portfolio.Add({"bond", BondOn(Curve("GBP", 0.04)), 1.0, {{"desk", "rates"}}});
    portfolio.Add({"forward", ForwardOn(1.08, "EURUSD"), -3.0, {{"desk", "fx"}}});
    portfolio.Add({"forward 2", ForwardOn(1.08, "EURUSD"), 1.0, {}});
    const HistoricalVaRReport report = HistoricalVaR(portfolio, SpotAndRateHistory(), {0.5, 0.9}, "desk");
    ASSERT_EQ(report.figures.size(), 2u);
    for (const VaRFigures& figures : report.figures) {
        ASSERT_EQ(figures.components.size(), 3u);
        double total = 0.0;
        for (const auto& [group, share] : figures.components) total += share;
        EXPECT_NEAR(total, figures.valueAtRisk, 1e-9 * std::abs(figures.valueAtRisk)) << figures.confidence;
        EXPECT_DOUBLE_EQ(-report.pnl[figures.scenario], figures.valueAtRisk);
    }
    EXPECT_EQ(FailureText([&] { HistoricalVaR(portfolio, SpotAndRateHistory(), {0.99, 1.0}); }),
              "The confidence level 1 is outside (0, 1).");
}

TEST(RevaluationThreads, TheSettingOrEveryHardwareThreadButNoMoreThanTheScenarios) {
    const std::size_t hardware = std::max(std::thread::hardware_concurrency(), 1u);
    EXPECT_EQ(RevaluationThreads(1000), hardware);
    EXPECT_EQ(RevaluationThreads(0), 1u);
    {
        ScopedEnv threads("ZEP_NUM_THREADS", "3");
        EXPECT_EQ(RevaluationThreads(1000), 3u);
        EXPECT_EQ(RevaluationThreads(2), 2u);
        ScopedEnv mode("ZEP_RUNMODE", "SINGLETHREAD");
        EXPECT_EQ(RevaluationThreads(1000), 1u);
    }
    ScopedEnv unreadable("ZEP_NUM_THREADS", "many");
    EXPECT_EQ(RevaluationThreads(1000), hardware);
}

// Seven days of two spots and a curve, every day moving all three.
FactorHistory SevenDays() {
    return {{Shock::Spot("EURUSD", FXForwardFactor::SPOT_SHOCK, 0.0, ShockType::RELATIVE),
             Shock::Spot("GBPUSD", FXForwardFactor::SPOT_SHOCK, 0.0, ShockType::RELATIVE),
             Shock::Curve("GBP", YieldCurveFactor::LEVEL, 0.0)},
            {{1.00, 1.25, 0.0400}, {1.02, 1.26, 0.0410}, {0.99, 1.24, 0.0395}, {1.01, 1.27, 0.0395},
             {1.03, 1.22, 0.0420}, {0.98, 1.25, 0.0380}, {1.00, 1.21, 0.0405}, {1.01, 1.23, 0.0401}}};
}

metrics::Portfolio MixedBook() {
    metrics::Portfolio portfolio;
    portfolio.Add({"bond", BondOn(Curve("GBP", 0.04)), 2.0, {}});
    portfolio.Add({"euro forward", ForwardOn(1.08, "EURUSD"), -3.0, {}});
    portfolio.Add({"sterling forward", ForwardOn(1.26, "GBPUSD"), 1.5, {}});
    return portfolio;
}

class RevaluedOnThreads : public ::testing::TestWithParam<const char*> {};

TEST_P(RevaluedOnThreads, GivesTheOneThreadPnLBitForBit) {
    const auto scenarios = HistoricalScenarios(SevenDays());
    const metrics::Portfolio portfolio = MixedBook();
    std::vector<double> alone;
    {
        ScopedEnv one("ZEP_NUM_THREADS", "1");
        alone = Revalue(portfolio, scenarios).values;
    }
    ScopedEnv threads("ZEP_NUM_THREADS", GetParam());
    const std::vector<double> shared = Revalue(portfolio, scenarios).values;
    ASSERT_EQ(shared.size(), alone.size());
    for (std::size_t i = 0; i < alone.size(); ++i) EXPECT_EQ(shared[i], alone[i]) << i;
}

INSTANTIATE_TEST_SUITE_P(ThreadCounts, RevaluedOnThreads, ::testing::Values("2", "3", "7", "64"));

TEST(Revalue, OnSeveralThreadsTheFailureOfTheEarliestScenarioIsReported) {
    metrics::Portfolio portfolio;
    portfolio.Add({"bond", BondOn(Curve("GBP", 0.04)), 1.0, {}});
    std::vector<Scenario> scenarios;
    for (std::size_t pillar = 0; pillar < 6; ++pillar)
        scenarios.emplace_back("pillar " + std::to_string(pillar),
                               std::vector<Shock>{Shock::Curve("GBP", YieldCurveFactor::KEY_RATE, 1.0, pillar)});
    std::string alone;
    {
        ScopedEnv one("ZEP_NUM_THREADS", "1");
        alone = FailureText([&] { Revalue(portfolio, scenarios); });
    }
    ScopedEnv three("ZEP_NUM_THREADS", "3");
    EXPECT_EQ(FailureText([&] { Revalue(portfolio, scenarios); }), alone);
    EXPECT_NE(alone.find("pillar 4"), std::string::npos) << alone;  // the curve has pillars 0 to 3
}

TEST(VaRReport, AMatrixOfTheWrongSizeIsRefused) {
    const metrics::Portfolio portfolio = MixedBook();
    EXPECT_EQ(FailureText([&] { VaRReport(portfolio, {"a", "b"}, {3, 2, std::vector<double>(5, 0.0)}, {0.9}); }),
              "The P&L matrix holds 5 values for 2 scenarios of a portfolio of 3 trades; it needs 6.");
}

}  // namespace
}  // namespace zep::scenario
