#include <gtest/gtest.h>

#include "FailureText.hpp"

#include <cmath>

#include "lum-solvers/LevenbergMarquardt.hpp"
#include "lum-solvers/ModifiedSecant.hpp"

namespace zep {
namespace {

using testing::FailureText;

TEST(ModifiedSecant, FindsTheRootOfAConvexFunctionInItsBracket) {
    ModifiedSecant secant(1e-15);
    secant.SetDomain(0.0, 3.0);
    EXPECT_NEAR(secant.Solve([](double x) { return std::exp(x) - 5.0; }), std::log(5.0), 1e-14);
}

TEST(ModifiedSecant, FailsWithoutDomainOrBracket) {
    ModifiedSecant secant;
    EXPECT_EQ(FailureText([&] { secant.Solve([](double x) { return x; }); }),
              "ModifiedSecant: Domain is not set");
    secant.SetDomain(1.0, 2.0);
    EXPECT_EQ(FailureText([&] { secant.Solve([](double x) { return x; }); }), "ModifiedSecant: not find root!");
}

TEST(FitLeastSquares, FitsAnExactExponentialThroughItsPoints) {
    const double xs[] = {0.0, 0.5, 1.0, 1.5, 2.0};
    const auto residuals = [&](const std::array<double, 2>& p, std::vector<double>& r) {
        for (std::size_t i = 0; i < 5; ++i) r[i] = p[0] * std::exp(p[1] * xs[i]) - 2.0 * std::exp(-0.7 * xs[i]);
    };
    const auto fit = FitLeastSquares<2>(residuals, {1.0, 0.0}, 5);
    EXPECT_NEAR(fit[0], 2.0, 1e-8);
    EXPECT_NEAR(fit[1], -0.7, 1e-8);
}

}  // namespace
}  // namespace zep
