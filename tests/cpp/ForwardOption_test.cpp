#include <gtest/gtest.h>

#include "FailureText.hpp"

#include <cmath>
#include <string>
#include <tuple>

#include "lum-closed-form/ForwardOption.hpp"

namespace zep {
namespace {

using Model = RateVolatilityModel;

struct Case {
    Model model;
    double forward, strike, expiry, volatility, shift;
};

class ForwardOptionCase : public ::testing::TestWithParam<Case> {};

// Call - put = F - K for every model: the forward contract needs no volatility.
TEST_P(ForwardOptionCase, PutCallParity) {
    const Case c = GetParam();
    const RateVolatility vol{c.model, c.volatility, c.shift};
    const double call = ForwardOptionValue(true, c.forward, c.strike, c.expiry, vol);
    const double put = ForwardOptionValue(false, c.forward, c.strike, c.expiry, vol);
    EXPECT_NEAR(call - put, c.forward - c.strike, 1e-15);
}

TEST_P(ForwardOptionCase, ImpliedVolatilityRoundTrip) {
    const Case c = GetParam();
    for (bool isCall : {true, false}) {
        const double value = ForwardOptionValue(isCall, c.forward, c.strike, c.expiry, {c.model, c.volatility, c.shift});
        const double implied = ImpliedForwardVolatility(isCall, c.forward, c.strike, c.expiry, value, c.model, c.shift);
        EXPECT_NEAR(implied, c.volatility, 1e-9 * c.volatility) << (isCall ? "call" : "put");
    }
}

INSTANTIATE_TEST_SUITE_P(Models, ForwardOptionCase,
                         ::testing::Values(Case{Model::Black, 0.03, 0.025, 2.0, 0.25, 0.0},
                                           Case{Model::Black, 0.05, 0.07, 0.5, 0.4, 0.0},
                                           Case{Model::ShiftedBlack, -0.002, 0.001, 3.0, 0.15, 0.02},
                                           Case{Model::ShiftedBlack, 0.01, -0.005, 10.0, 0.3, 0.01},
                                           Case{Model::Bachelier, -0.004, 0.002, 1.5, 0.008, 0.0},
                                           Case{Model::Bachelier, 0.03, 0.03, 5.0, 0.0075, 0.0}));

// At the money a small lognormal volatility sigma and the normal one F sigma agree up to a
// relative sigma^2 T / 24.
TEST(ForwardOption, BachelierMatchesBlackAtTheMoneyForSmallVolatility) {
    const double forward = 0.04, expiry = 2.0, sigma = 1e-3;
    const double black = ForwardOptionValue(true, forward, forward, expiry, {Model::Black, sigma, 0.0});
    const double normal = ForwardOptionValue(true, forward, forward, expiry, {Model::Bachelier, forward * sigma, 0.0});
    EXPECT_NEAR(normal / black - 1.0, 0.0, sigma * sigma * expiry / 20.0);
    // And the at-the-money normal value is sigma sqrt(T / 2 pi).
    EXPECT_NEAR(normal, forward * sigma * std::sqrt(expiry / (2.0 * M_PI)), 1e-18);
}

TEST(ForwardOption, ShiftedBlackIsBlackOnShiftedRates) {
    const double value = ForwardOptionValue(false, 0.01, 0.02, 1.0, {Model::ShiftedBlack, 0.2, 0.03});
    EXPECT_DOUBLE_EQ(value, ForwardOptionValue(false, 0.04, 0.05, 1.0, {Model::Black, 0.2, 0.0}));
}

TEST(ForwardOption, NegativeForwardUnderBlackFailsNamingTheForward) {
    const std::string message =
        testing::ErrorMessage([] { ForwardOptionValue(true, -0.001, 0.01, 1.0, {Model::Black, 0.2, 0.0}); });
    EXPECT_NE(message.find("the forward rate -0.001"), std::string::npos) << message;
}

TEST(ForwardOption, ImpliedVolatilityRefusesValuesOutsideTheBounds) {
    const auto below = testing::ErrorMessage(
        [] { ImpliedForwardVolatility(true, 0.03, 0.02, 1.0, 0.005, Model::Bachelier); });
    EXPECT_NE(below.find("below its value at zero volatility"), std::string::npos) << below;
    const auto above = testing::ErrorMessage([] { ImpliedForwardVolatility(true, 0.03, 0.02, 1.0, 0.031, Model::Black); });
    EXPECT_NE(above.find("upper bound"), std::string::npos) << above;
}

TEST(ForwardOption, ModelNames) {
    EXPECT_EQ(RateVolatilityModelOf("normal"), Model::Bachelier);
    EXPECT_EQ(RateVolatilityModelOf("ShiftedBlack"), Model::ShiftedBlack);
    EXPECT_NE(testing::ErrorMessage([] { RateVolatilityModelOf("SABR"); }).find("'SABR'"), std::string::npos);
}

}  // namespace
}  // namespace zep
