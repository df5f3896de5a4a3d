#include <gtest/gtest.h>

#include <cmath>

#include "lum-closed-form/BivariateNormal.hpp"
#include "lum-closed-form/NormalDistribution.hpp"

namespace {

using zep::BivariateNormalCdf;
using zep::NormalCdf;

class Correlations : public testing::TestWithParam<double> {};

// Sheppard: P(X < 0, Y < 0) = 1/4 + asin(rho) / (2 pi).
TEST_P(Correlations, AtTheOriginIsSheppardsFormula) {
    const double rho = GetParam();
    EXPECT_NEAR(BivariateNormalCdf(0.0, 0.0, rho), 0.25 + std::asin(rho) / (2.0 * M_PI), 1e-15);
}

// P(X < a, Y < b) + P(X < a, -Y < -b) = P(X < a), and -Y has correlation -rho with X.
TEST_P(Correlations, SplitsTheMarginal) {
    const double rho = GetParam();
    for (const double a : {-2.5, -0.7, 0.3, 1.9})
        for (const double b : {-1.2, 0.0, 0.8, 3.0})
            EXPECT_NEAR(BivariateNormalCdf(a, b, rho) + BivariateNormalCdf(a, -b, -rho), NormalCdf(a), 1e-15)
                << a << " " << b;
}

INSTANTIATE_TEST_SUITE_P(BivariateNormal, Correlations,
                         testing::Values(-0.999, -0.95, -0.8, -0.5, -0.1, 0.2, 0.6, 0.9, 0.97, 0.9999));

TEST(BivariateNormal, IndependentIsTheProductAndSymmetric) {
    EXPECT_NEAR(BivariateNormalCdf(0.4, -1.1, 0.0), NormalCdf(0.4) * NormalCdf(-1.1), 1e-16);
    EXPECT_NEAR(BivariateNormalCdf(0.4, -1.1, 0.7), BivariateNormalCdf(-1.1, 0.4, 0.7), 1e-16);
}

}  // namespace
