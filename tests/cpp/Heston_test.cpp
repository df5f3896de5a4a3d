#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <complex>
#include <vector>

#include "lum-auxiliary/AdaptiveGaussKronrod.hpp"
#include "lum-auxiliary/Error.hpp"
#include "lum-closed-form/BSVanilla.hpp"
#include "lum-closed-form/HestonFftPricer.hpp"
#include "lum-closed-form/HestonModel.hpp"

namespace {

using zep::HestonModel;

TEST(AdaptiveGaussKronrod, IntegratesAPeakedFunctionToTolerance) {
    // Integral of 1 / (1e-4 + x^2) over [-1, 1] = 2 / 1e-2 atan(1 / 1e-2).
    const auto f = [](double x) { return 1.0 / (1e-4 + x * x); };
    zep::AdaptiveGaussKronrod<decltype(f)> quadrature(f, zep::KronrodSettings{1e-12}, "test");
    EXPECT_NEAR(quadrature.Integrate(-1.0, 1.0), 200.0 * std::atan(100.0), 1e-9);
}

// The 21-point rule is exact up to degree 31 and its 10-point Gauss rule up to 19: a polynomial of
// degree 19 is accepted on the first interval, one of degree 31 is exact even where the two differ.
TEST(AdaptiveGaussKronrod, OneIntervalIsExactForPolynomialsOfTheRulesDegree) {
    const auto degree19 = [](double x) { return 20.0 * std::pow(x, 19) + 1.0; };
    zep::AdaptiveGaussKronrod<decltype(degree19)> tight(degree19, zep::KronrodSettings{1e-13}, "test");
    EXPECT_NEAR(tight.Integrate(0.0, 1.0), 2.0, 1e-14);
    EXPECT_EQ(tight.Evaluations(), 21);
    const auto degree31 = [](double x) { return 32.0 * std::pow(x, 31); };
    zep::AdaptiveGaussKronrod<decltype(degree31)> loose(degree31, zep::KronrodSettings{1.0}, "test");
    EXPECT_NEAR(loose.Integrate(0.0, 1.0), 1.0, 1e-14);
    EXPECT_EQ(loose.Evaluations(), 21);
}

TEST(AdaptiveGaussKronrod, BreakPointsSplitTheRangeUnderOneBudget) {
    // |x - 1/3| has a kink no interval end meets by halving; a break point there makes it exact.
    const auto f = [](double x) { return std::abs(x - 1.0 / 3.0); };
    zep::AdaptiveGaussKronrod<decltype(f)> quadrature(f, zep::KronrodSettings{1e-14}, "test");
    const std::array<double, 3> breaks = {0.0, 1.0 / 3.0, 1.0};
    EXPECT_NEAR(quadrature.Integrate(breaks), (1.0 / 9.0 + 4.0 / 9.0) / 2.0, 1e-15);
    EXPECT_EQ(quadrature.Evaluations(), 42);
}

// Two integrands on one subdivision, each to the tolerance: a peak and a polynomial.
struct Pair {
    double peak, cubic;
    friend Pair operator+(Pair x, const Pair& y) { return {x.peak + y.peak, x.cubic + y.cubic}; }
    friend Pair operator-(Pair x, const Pair& y) { return {x.peak - y.peak, x.cubic - y.cubic}; }
    friend Pair operator*(double s, Pair x) { return {s * x.peak, s * x.cubic}; }
    friend double LargestMagnitude(const Pair& x) { return std::max(std::abs(x.peak), std::abs(x.cubic)); }
    friend bool AllFinite(const Pair& x) { return std::isfinite(x.peak) && std::isfinite(x.cubic); }
};

TEST(AdaptiveGaussKronrod, IntegratesSeveralFunctionsOnOneSubdivision) {
    const auto f = [](double x) { return Pair{1.0 / (1e-4 + x * x), x * x * x + x * x}; };
    zep::AdaptiveGaussKronrod<decltype(f), Pair> quadrature(f, zep::KronrodSettings{1e-12}, "test");
    const Pair integral = quadrature.Integrate(-1.0, 1.0);
    EXPECT_NEAR(integral.peak, 200.0 * std::atan(100.0), 1e-9);
    EXPECT_NEAR(integral.cubic, 2.0 / 3.0, 1e-14);
}

TEST(AdaptiveGaussKronrod, RaisesWhenTheBudgetRunsOut) {
    const auto f = [](double x) { return std::sin(1.0 / (x + 1e-9)); };
    zep::AdaptiveGaussKronrod<decltype(f)> quadrature(f, zep::KronrodSettings{1e-15, 30, 500}, "oscillating");
    EXPECT_THROW(quadrature.Integrate(0.0, 1.0), zep::Error);
}

// phi(0) = 1 (a distribution) and phi(-i) = E[S_T / F] = 1 (the forward is a martingale).
TEST(HestonModel, CharacteristicFunctionIsNormalisedAndMartingale) {
    for (const double rho : {-0.9, 0.0, 0.7}) {
        const HestonModel model(0.04, 1.5, 0.06, 0.8, rho);
        for (const double t : {0.01, 1.0, 30.0}) {
            EXPECT_NEAR(std::abs(model.CharacteristicFunction({0.0, 0.0}, t) - 1.0), 0.0, 1e-14);
            EXPECT_NEAR(std::abs(model.CharacteristicFunction({0.0, -1.0}, t) - 1.0), 0.0, 1e-12);
        }
    }
}

// With sigma -> 0 the variance is deterministic: x is normal with variance the integrated one.
TEST(HestonModel, SmallVolOfVarianceGivesTheGaussianCharacteristicFunction) {
    const HestonModel model(0.09, 2.0, 0.04, 1e-10, -0.5);
    const double t = 0.7;
    const double w = model.MeanVariance(t) * t;
    for (const double u : {0.3, 2.0, 7.0}) {
        const std::complex<double> gaussian = std::exp(std::complex<double>(-0.5 * w * u * u, -0.5 * w * u));
        EXPECT_NEAR(std::abs(model.CharacteristicFunction({u, 0.0}, t) - gaussian), 0.0, 1e-10);
    }
}

TEST(HestonModel, RefusesBadParameters) {
    EXPECT_THROW(HestonModel(-0.01, 1.0, 0.04, 0.5, 0.0), zep::Error);
    EXPECT_THROW(HestonModel(0.04, 0.0, 0.04, 0.5, 0.0), zep::Error);
    EXPECT_THROW(HestonModel(0.04, 1.0, NAN, 0.5, 0.0), zep::Error);
    EXPECT_THROW(HestonModel(0.04, 1.0, 0.04, 0.0, 0.0), zep::Error);
    EXPECT_THROW(HestonModel(0.04, 1.0, 0.04, 0.5, 1.0), zep::Error);
}

TEST(HestonFftPricer, AgreesWithTheIntegralOnItsGrid) {
    const HestonModel model(0.04, 1.5, 0.05, 0.6, -0.7);
    const double spot = 100.0, rd = 0.03, rf = 0.01, t = 1.0;
    zep::HestonFftPricer pricer(model, t, zep::FftSettings{4096, 0.1, 1.5});
    const double forward = spot * std::exp((rd - rf) * t);
    std::vector<double> strikes;
    for (std::size_t m = 0; m < pricer.GridLogMoneyness().size(); ++m) {
        const double k = pricer.GridLogMoneyness()[m];
        if (std::abs(k) < 0.5) strikes.push_back(forward * std::exp(k));
    }
    std::vector<double> prices(strikes.size());
    pricer.Prices(zep::BSVanilla::Call, strikes, t, rd, rf, spot, prices);
    for (std::size_t i = 0; i < strikes.size(); ++i)
        EXPECT_NEAR(prices[i], model.Price(zep::BSVanilla::Call, strikes[i], t, t, rd, rf, spot), 1e-8)
            << "strike " << strikes[i];
}

}  // namespace
