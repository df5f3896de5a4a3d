#include <gtest/gtest.h>

#include <cmath>
#include <vector>

#include "lum-fxo-market/SabrSmile.hpp"

namespace zep {
namespace {

// The normal expansion switches to its at-the-money limit within 1e-9 of log-moneyness and to
// its beta-1 limit within 1e-12 of beta 1: the volatility must not jump across either switch.
class SabrNormalLimits : public ::testing::TestWithParam<double> {};

TEST_P(SabrNormalLimits, ContinuousAcrossTheAtTheMoneySwitch) {
    const double beta = GetParam(), forward = 0.03;
    const SabrSmile smile({0.2 * std::pow(forward, 1.0 - beta), beta, -0.3, 0.4});
    const double atTheMoney = smile.NormalVolatility(forward, forward, 5.0);
    for (double relative : {1e-11, 1e-9, 1e-8, 1e-7}) {
        const double above = smile.NormalVolatility(forward * (1.0 + relative), forward, 5.0);
        EXPECT_NEAR(above, atTheMoney, 5.0 * relative * atTheMoney) << "beta " << beta << ", strike +" << relative;
    }
}

INSTANTIATE_TEST_SUITE_P(Betas, SabrNormalLimits, ::testing::Values(0.3, 0.5, 0.9, 1.0));

TEST(SabrNormalExpansion, BetaOneIsTheLimitOfBetasBelowIt) {
    const double forward = 0.03, strike = 0.045;
    const double atOne = SabrSmile({0.22, 1.0, -0.2, 0.5}).NormalVolatility(strike, forward, 2.0);
    const double justBelow = SabrSmile({0.22, 1.0 - 1e-11, -0.2, 0.5}).NormalVolatility(strike, forward, 2.0);
    EXPECT_NEAR(justBelow, atOne, 1e-9 * atOne);
}

// With beta 0 the expansion is the normal SABR model's: any sign of rates, no vol of vol is
// Bachelier's constant volatility.
TEST(SabrNormalExpansion, BetaZeroTakesNegativeRates) {
    const SabrSmile flat({0.007, 0.0, 0.4, 0.0});
    for (double strike : {-0.02, -0.001, 0.0, 0.015})
        EXPECT_DOUBLE_EQ(flat.NormalVolatility(strike, -0.004, 3.0), 0.007);
    const SabrSmile skewed({0.007, 0.0, -0.4, 0.5});
    EXPECT_TRUE(std::isfinite(skewed.NormalVolatility(-0.02, -0.004, 3.0)));
    EXPECT_GT(skewed.NormalVolatility(-0.02, -0.004, 3.0), skewed.NormalVolatility(0.01, -0.004, 3.0));
}

}  // namespace
}  // namespace zep
