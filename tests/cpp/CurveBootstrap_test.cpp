#include "lum-interest-rates/CurveBootstrap.hpp"

#include <gtest/gtest.h>

#include <tuple>

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
                        fresh.Curve()->DiscountFactor(fresh.Pillars()[i]), 1e-13) << index << " " << i;
    }
}

TEST_P(BootstrapByInterpolation, TheLastQuoteRepricesExactly) {
    const auto [variable, method] = GetParam();
    const CurveBootstrap bootstrap(kToday, Quotes(), Conventions(variable, method), Calendar::Shared());
    EXPECT_NEAR(bootstrap.ImpliedRates().back(), bootstrap.Quotes().back().rate, 1e-10);
}

INSTANTIATE_TEST_SUITE_P(VariablesAndMethods, BootstrapByInterpolation,
                         ::testing::Values(std::tuple{ContinuousZeroRates, LinearInterpolation},
                                           std::tuple{DiscountFactors, LogLinearInterpolation},
                                           std::tuple{SimpleZeroRates, FlatInterpolation},
                                           std::tuple{ContinuousZeroRates, CubicInterpolation},
                                           std::tuple{ContinuousZeroRates, ClampedCubicInterpolation}));

// Local interpolations leave every earlier quote repriced as later pillars are added.
TEST(CurveBootstrap, LocalInterpolationsRepriceEveryQuote) {
    for (const auto& [variable, method] : {std::tuple{ContinuousZeroRates, LinearInterpolation},
                                           std::tuple{DiscountFactors, LogLinearInterpolation}}) {
        const CurveBootstrap bootstrap(kToday, Quotes(), Conventions(variable, method), Calendar::Shared());
        const std::vector<double> implied = bootstrap.ImpliedRates();
        for (std::size_t i = 0; i < implied.size(); ++i) EXPECT_NEAR(implied[i], bootstrap.Quotes()[i].rate, 1e-10) << i;
    }
}

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
