#include "lum-interest-rates/CurveBootstrap.hpp"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <tuple>

#include "lum-time/Schedule.hpp"

namespace zep {
namespace {

std::vector<RateQuote> Quotes() {
    std::vector<RateQuote> quotes;
    for (int months : {1, 3, 6})
        quotes.push_back({RateInstrument::Deposit, Period(), Period(months, Months), 0.035 + 0.0002 * months});
    quotes.push_back({RateInstrument::FRA, Period(6, Months), Period(12, Months), 0.034});
    for (int years : {2, 3, 5, 7, 10, 15, 20, 30})
        quotes.push_back({RateInstrument::Swap, Period(), Period(years, Years), 0.031 + 0.0003 * years});
    return quotes;
}

BootstrapConventions Conventions(std::int32_t variable, std::int32_t method) {
    BootstrapConventions conventions;
    conventions.interpolatedVariable = variable;
    conventions.interpolationMethod = method;
    return conventions;
}

const Date kToday(15, 1, 2024);

class BootstrapByInterpolation : public ::testing::TestWithParam<std::tuple<std::int32_t, std::int32_t>> {};

// A curve solved pillar by pillar on one trial curve changed in place, and a curve solved again
// from one pillar after a requote, are the curves a fresh bootstrap of the same quotes gives.
TEST_P(BootstrapByInterpolation, RequoteGivesTheFreshBootstrapOfTheNewQuotes) {
    const auto [variable, method] = GetParam();
    CurveBootstrap bootstrap(kToday, Quotes(), Conventions(variable, method), Calendar::Shared());
    for (const std::size_t index : {std::size_t{0}, std::size_t{4}, std::size_t{11}}) {
        std::vector<RateQuote> bumped = bootstrap.Quotes();
        bumped[index].rate += 0.0005;
        bootstrap.Requote(index, bumped[index].rate);
        const CurveBootstrap fresh(kToday, bumped, Conventions(variable, method), Calendar::Shared());
        for (std::size_t i = 0; i < bumped.size(); ++i)
            EXPECT_NEAR(bootstrap.Curve()->DiscountFactor(bootstrap.Pillars()[i]),
                        fresh.Curve()->DiscountFactor(fresh.Pillars()[i]), 1e-11) << index << " " << i;
    }
}

// Local interpolations reprice pillar by pillar; the others through the global fit.
TEST_P(BootstrapByInterpolation, EveryQuoteReprices) {
    const auto [variable, method] = GetParam();
    const CurveBootstrap bootstrap(kToday, Quotes(), Conventions(variable, method), Calendar::Shared());
    const std::vector<double> implied = bootstrap.ImpliedQuotes();
    for (std::size_t i = 0; i < implied.size(); ++i) EXPECT_NEAR(implied[i], bootstrap.Quotes()[i].rate, 1e-10) << i;
}

TEST(CurveBootstrap, WithoutTheGlobalFitACubicCurveRepricesOnlyItsLastQuote) {
    BootstrapConventions conventions = Conventions(ContinuousZeroRates, CubicInterpolation);
    conventions.globalFit = false;
    const CurveBootstrap bootstrap(kToday, Quotes(), conventions, Calendar::Shared());
    const std::vector<double> implied = bootstrap.ImpliedQuotes();
    EXPECT_NEAR(implied.back(), bootstrap.Quotes().back().rate, 1e-10);
    double worst = 0.0;
    for (std::size_t i = 0; i < implied.size(); ++i) worst = std::max(worst, std::abs(implied[i] - bootstrap.Quotes()[i].rate));
    EXPECT_GT(worst, 1e-8);
}

INSTANTIATE_TEST_SUITE_P(VariablesAndMethods, BootstrapByInterpolation,
                         ::testing::Values(std::tuple{ContinuousZeroRates, LinearInterpolation},
                                           std::tuple{DiscountFactors, LogLinearInterpolation},
                                           std::tuple{SimpleZeroRates, FlatInterpolation},
                                           std::tuple{ContinuousZeroRates, CubicInterpolation},
                                           std::tuple{ContinuousZeroRates, ClampedCubicInterpolation}));

TEST(CurveBootstrap, AFailedRequoteLeavesTheCurveAndQuotesAsTheyWere) {
    CurveBootstrap bootstrap(kToday, Quotes(), BootstrapConventions{}, Calendar::Shared());
    const auto before = bootstrap.Curve();
    const double tenYears = before->DiscountFactor(10.0);
    try {
        bootstrap.Requote(0, 25.0);
        FAIL() << "a 2500% deposit has no discount factor";
    } catch (const std::exception& error) {
        EXPECT_NE(std::string(error.what()).find("no discount factor reprices the deposit 1M quote"), std::string::npos)
            << error.what();
    }
    EXPECT_EQ(bootstrap.Curve(), before);
    EXPECT_DOUBLE_EQ(bootstrap.Quotes()[0].rate, Quotes()[0].rate);
    bootstrap.Requote(5, bootstrap.Quotes()[5].rate);  // the trial curve is whole again
    EXPECT_NEAR(bootstrap.Curve()->DiscountFactor(10.0), tenYears, 1e-15);
}

}  // namespace
}  // namespace zep

namespace zep {
namespace {

RateQuote Future(int startMonths, double price, double convexity) {
    return {RateInstrument::Future, Period(startMonths, Months), Period(3, Months), price, convexity};
}

RateQuote Ois(const char* tenor, double rate) { return {RateInstrument::OIS, Period(), Period(std::string(tenor)), rate}; }

RateQuote Swap(int years, double rate) { return {RateInstrument::Swap, Period(), Period(years, Years), rate}; }

TEST(CurveBootstrap, FuturesRepriceTheirPricesWithTheConvexityAdjustment) {
    const std::vector<RateQuote> quotes = {{RateInstrument::Deposit, Period(), Period(2, Months), 0.036},
                                           Future(2, 96.45, 0.0), Future(5, 96.60, 0.0001), Future(8, 96.72, 0.0002),
                                           Future(11, 96.80, 0.0004), Swap(3, 0.033)};
    const CurveBootstrap bootstrap(kToday, quotes, BootstrapConventions{}, Calendar::Shared());
    const std::vector<double> implied = bootstrap.ImpliedQuotes();
    for (std::size_t i = 0; i < implied.size(); ++i) {
        const bool future = bootstrap.Quotes()[i].instrument == RateInstrument::Future;
        // A price is 100 times a rate: 1e-10 in rate.
        EXPECT_NEAR(implied[i], bootstrap.Quotes()[i].rate, future ? 1e-8 : 1e-10) << i;
    }
    // The first contract is the March 2024 one: third Wednesday, 20 March, to 20 June.
    EXPECT_EQ(bootstrap.Pillars()[1], Date(20, 6, 2024));
    // Its forward over Act/360 is the futures rate, 3.55%.
    const YieldCurve& curve = *bootstrap.Curve();
    const double forward = (curve.DiscountFactor(Date(20, 3, 2024)) / curve.DiscountFactor(Date(20, 6, 2024)) - 1.0) / (92.0 / 360.0);
    EXPECT_NEAR(forward, 0.0355, 1e-12);
}

std::vector<RateQuote> OisQuotes() {
    return {Ois("1W", 0.0390), Ois("1M", 0.0389), Ois("3M", 0.0385), Ois("6M", 0.0375), Ois("1Y", 0.0355),
            Ois("2Y", 0.0320), Ois("5Y", 0.0290), Ois("10Y", 0.0285), Ois("30Y", 0.0270)};
}

// A projection curve against an OIS discount curve: the fixed leg discounted on the OIS curve,
// each six-month floating period paying the projection forward, discounted on the OIS curve.
TEST(CurveBootstrap, AProjectionCurveRepricesSwapsDiscountedOnTheGivenCurve) {
    const CurveBootstrap ois(kToday, OisQuotes(), BootstrapConventions{}, Calendar::Shared());
    for (std::size_t i = 0; i < OisQuotes().size(); ++i)
        EXPECT_NEAR(ois.ImpliedQuotes()[i], ois.Quotes()[i].rate, 1e-10) << i;
    const std::vector<RateQuote> swaps = {{RateInstrument::Deposit, Period(), Period(6, Months), 0.0395},
                                          Swap(2, 0.0335), Swap(5, 0.0305), Swap(10, 0.0300), Swap(30, 0.0285)};
    const CurveBootstrap projection(kToday, swaps, BootstrapConventions{}, Calendar::Shared(), ois.Curve());
    const std::vector<double> implied = projection.ImpliedQuotes();
    for (std::size_t i = 0; i < swaps.size(); ++i) EXPECT_NEAR(implied[i], swaps[i].rate, 1e-10) << i;

    // The 2-year swap priced by hand from the two curves.
    ScheduleRules fixedRules, floatRules;
    fixedRules.tenor = Period(1, Years), fixedRules.centres = "TARGET", fixedRules.dayCounter = DayCounter(Thirty360);
    floatRules.tenor = Period(6, Months), floatRules.centres = "TARGET";
    const Date spot(17, 1, 2024), end(17, 1, 2026);
    const Schedule fixedLeg(spot, end, fixedRules, Calendar::Shared()), floatLeg(spot, end, floatRules, Calendar::Shared());
    double annuity = 0.0, floating = 0.0;
    for (const SchedulePeriod& p : fixedLeg.Periods())
        annuity += p.accrualFraction * ois.Curve()->DiscountFactor(p.payment);
    for (const SchedulePeriod& p : floatLeg.Periods())
        floating += ois.Curve()->DiscountFactor(p.payment) *
                    (projection.Curve()->DiscountFactor(p.accrualStart) / projection.Curve()->DiscountFactor(p.accrualEnd) - 1.0);
    EXPECT_NEAR(floating / annuity, 0.0335, 1e-10);
}

TEST(CurveBootstrap, RequoteAgainstAGivenDiscountCurveMatchesAFreshBootstrap) {
    const CurveBootstrap ois(kToday, OisQuotes(), BootstrapConventions{}, Calendar::Shared());
    std::vector<RateQuote> swaps = {Swap(2, 0.0335), Swap(5, 0.0305), Swap(10, 0.0300)};
    CurveBootstrap projection(kToday, swaps, BootstrapConventions{}, Calendar::Shared(), ois.Curve());
    projection.Requote(1, 0.0310);
    swaps[1].rate = 0.0310;
    const CurveBootstrap fresh(kToday, swaps, BootstrapConventions{}, Calendar::Shared(), ois.Curve());
    EXPECT_NEAR(projection.Curve()->DiscountFactor(9.0), fresh.Curve()->DiscountFactor(9.0), 1e-14);
}

}  // namespace
}  // namespace zep
