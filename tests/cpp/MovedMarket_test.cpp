// The same trade on a moved market (scenarios and bumped risk of the barrier and digital
// adapters) against the trade booked afresh on that market, and the curve moves a scenario reports
// for P&L explain against the shocks it was given.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include <boost/make_shared.hpp>

#include "lum-closed-form/DigitalOption.hpp"
#include "lum-closed-form/VanillaBarriers.hpp"
#include "lum-risk-metrics/ShockedMarket.hpp"

namespace zep {
namespace {

Date D(const char* text) { return Date(std::string(text)); }

VanillaBarriers::Terms BarrierTerms() {
    VanillaBarriers::Terms terms;
    terms.buySell = -1;
    terms.faceValue = 2e6;
    terms.strike = 1.10;
    terms.barrierType = 3;  // down-and-out
    terms.barrier = 1.02;
    terms.referenceDate = D("2024-01-15");
    terms.expiryDate = D("2024-07-15");
    terms.settlementDate = terms.premiumDate = terms.deliveryDate = D("2024-07-17");
    return terms;
}

VanillaBarriers Barrier(double spot, double volatility) {
    return VanillaBarriers(BarrierTerms(), spot, 0.035, 0.02, boost::make_shared<FlatVolatility>(volatility),
                           VanillaBarriers::SmileQuotes{-0.004, 0.002, 0, false, {}});
}

DigitalOption Digital(double spot, double volatility) {
    DigitalOption::Terms terms;
    terms.payout = 1e6;
    terms.strike = 1.09;
    terms.referenceDate = D("2024-01-15");
    terms.expiryDate = D("2024-07-15");
    terms.deliveryDate = D("2024-07-17");
    return DigitalOption(terms, spot, 0.035, 0.02, boost::make_shared<FlatVolatility>(volatility));
}

struct Move {
    double spot, volatilityShift;
};

class MovedMarket : public ::testing::TestWithParam<Move> {};

TEST_P(MovedMarket, BarrierIsTheBarrierBookedOnTheMovedMarket) {
    const Move move = GetParam();
    for (int method : {VanillaBarriers::BlackScholes, VanillaBarriers::VannaVolga})
        EXPECT_DOUBLE_EQ(Barrier(1.08, 0.09).OnMovedMarket(move.spot, move.volatilityShift).PV(method),
                         Barrier(move.spot, 0.09 + move.volatilityShift).PV(method))
            << "method " << method << ", spot " << move.spot << ", shift " << move.volatilityShift;
}

TEST_P(MovedMarket, DigitalIsTheDigitalBookedOnTheMovedMarket) {
    const Move move = GetParam();
    const DigitalOption moved = Digital(1.08, 0.09).OnMovedMarket(move.spot, move.volatilityShift);
    const DigitalOption booked = Digital(move.spot, 0.09 + move.volatilityShift);
    EXPECT_DOUBLE_EQ(moved.PV(), booked.PV());
    EXPECT_DOUBLE_EQ(moved.Delta(), booked.Delta());
    EXPECT_DOUBLE_EQ(moved.GetVolatility(), booked.GetVolatility());
}

INSTANTIATE_TEST_SUITE_P(SpotAndVolatility, MovedMarket,
                         ::testing::Values(Move{1.08, 0.0}, Move{1.05, 0.01}, Move{1.12, -0.02}));

TEST(MovedMarket, RefusesASpotNotAboveZero) {
    EXPECT_THROW(Barrier(1.08, 0.09).OnMovedMarket(0.0, 0.0), std::exception);
    EXPECT_THROW(Digital(1.08, 0.09).OnMovedMarket(-1.0, 0.0), std::exception);
}

TEST(ShockedMarketRateMove, AddsTheLevelToTheKeyRateOfThePillarInRateUnits) {
    using scenario::Shock;
    const scenario::Scenario day("day", {Shock::Curve("EUR", metrics::YieldCurveFactor::LEVEL, 2.0),
                                         Shock::Curve("EUR", metrics::YieldCurveFactor::KEY_RATE, 5.0, 1)});
    const scenario::ShockedMarket market(day);
    const std::vector<Date> pillars{D("2024-01-15"), D("2025-01-15"), D("2030-01-15")};
    const YieldCurve eur(D("2024-01-15"), pillars, {0.03, 0.03, 0.03}, Continuous, DayCounter(Act365Fixed),
                         ContinuousZeroRates, LinearInterpolation, "EUR");
    const YieldCurve usd(D("2024-01-15"), pillars, {0.03, 0.03, 0.03}, Continuous, DayCounter(Act365Fixed),
                         ContinuousZeroRates, LinearInterpolation, "USD");
    const std::vector<double> eurMoves = market.RateMoves(eur);
    EXPECT_DOUBLE_EQ(eurMoves[0], 2e-4);
    EXPECT_DOUBLE_EQ(eurMoves[1], 7e-4);
    EXPECT_EQ(market.RateMoves(usd), std::vector<double>(3, 0.0));
}

// Pillars 0, 1, 2 and 4 years after the first (1461 days to the last): the shapes are linear in
// those days between the pillars they pin.
TEST(ShockedMarketRateMove, SlopeTwistAndCurvatureAreLinearInTimeBetweenTheirPinnedPillars) {
    using scenario::Shock;
    const std::vector<Date> pillars{D("2024-01-15"), D("2025-01-15"), D("2026-01-15"), D("2028-01-15")};
    const YieldCurve eur(D("2024-01-15"), pillars, {0.03, 0.03, 0.03, 0.03}, Continuous, DayCounter(Act365Fixed),
                         ContinuousZeroRates, LinearInterpolation, "EUR");
    const auto moves = [&](metrics::YieldCurveFactor factor, std::size_t pillar) {
        const scenario::ShockedMarket market(scenario::Scenario("day", {Shock::Curve("EUR", factor, 10.0, pillar)}));
        std::vector<double> bp = market.RateMoves(eur);
        for (double& move : bp) move /= 1e-4;
        return bp;
    };
    const double days[] = {0.0, 366.0, 731.0, 1461.0};
    const auto expectNear = [](const std::vector<double>& actual, const std::vector<double>& expected) {
        for (std::size_t i = 0; i < expected.size(); ++i) EXPECT_NEAR(actual[i], expected[i], 1e-9) << "pillar " << i;
    };
    expectNear(moves(metrics::YieldCurveFactor::SLOPE, 0),
               {0.0, 10.0 * days[1] / days[3], 10.0 * days[2] / days[3], 10.0});
    expectNear(moves(metrics::YieldCurveFactor::TWIST_SHORT_LONG, 1),
               {-10.0 * days[1] / (days[3] - days[1]), 0.0, 10.0 * (days[2] - days[1]) / (days[3] - days[1]), 10.0});
    expectNear(moves(metrics::YieldCurveFactor::CURVATURE, 2),
               {0.0, 10.0 * days[1] / days[2], 10.0, 0.0});
}

}  // namespace
}  // namespace zep
