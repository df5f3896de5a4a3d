#include <gtest/gtest.h>

#include "ParamNames.hpp"

#include "FailureText.hpp"

#include <cmath>
#include <random>
#include <stdexcept>
#include <string>

#include <boost/property_tree/ptree.hpp>

#include "lum-auxiliary/Error.hpp"
#include "lum-auxiliary/Interpolation.hpp"

namespace {

using Interp = zep::Interpolation<double, double, double>;
using zep::ExtrapolationMethod;
using zep::InterpolationMethod;

const std::vector<double> kX = {0.5, 1.0, 2.0, 3.5, 5.0};
const std::vector<double> kY = {0.02, 0.025, 0.03, 0.028, 0.031};


class EveryMethodAndExtrapolation
    : public ::testing::TestWithParam<std::tuple<std::uint32_t, std::uint32_t>> {};

TEST_P(EveryMethodAndExtrapolation, EndNodesReturnTheNodeValue) {
    const auto [method, extrapolation] = GetParam();
    Interp interp(kX, kY, InterpolationMethod(method), ExtrapolationMethod(extrapolation));
    EXPECT_EQ(interp.Evaluate(kX.front()), kY.front());
    EXPECT_EQ(interp.Evaluate(kX.back()), kY.back());
}
INSTANTIATE_TEST_SUITE_P(AllSettings, EveryMethodAndExtrapolation,
                         ::testing::Combine(::testing::Range(0u, 9u), ::testing::Range(0u, 5u)),
                         [](const ::testing::TestParamInfo<EveryMethodAndExtrapolation::ParamType>& info) {
                             return zep::InterpolationMethodToString(std::get<0>(info.param)) + "_" +
                                    zep::ExtrapolationMethodToString(std::get<1>(info.param)) + "Extrapolation";
                         });

class InterpolatingMethods : public ::testing::TestWithParam<std::uint32_t> {};

TEST_P(InterpolatingMethods, PassThroughInteriorNodes) {
    Interp interp(kX, kY, InterpolationMethod(GetParam()), zep::FlatExtrapolation);
    for (std::size_t i = 1; i + 1 < kX.size(); ++i)
        EXPECT_NEAR(interp.Evaluate(kX[i]), kY[i], 1e-14) << "node " << i;
}
// "ffq" passes through nodes from the second on; flat and closest are step rules.
INSTANTIATE_TEST_SUITE_P(Smooth, InterpolatingMethods, ::testing::Values(2u, 3u, 4u, 5u, 6u, 7u, 8u),
                         [](const ::testing::TestParamInfo<std::uint32_t>& info) {
                             return zep::InterpolationMethodToString(info.param);
                         });

TEST(Interpolation, SingleNodeWithLinearExtrapolationIsConstant) {
    Interp interp({1.0}, {0.7}, zep::LinearInterpolation, zep::LinearExtrapolation);
    for (double x : {-3.0, 0.0, 1.0, 2.0, 40.0}) EXPECT_EQ(interp.Evaluate(x), 0.7) << x;
}

TEST(Interpolation, ClosestTakesTheRightNodeInsideEveryInterval) {
    Interp interp(kX, kY, zep::ClosestInterpolation, zep::FlatExtrapolation);
    for (std::size_t i = 0; i + 1 < kX.size(); ++i) {
        EXPECT_EQ(interp.Evaluate(kX[i] + 0.1 * (kX[i + 1] - kX[i])), kY[i + 1]) << i;
        if (i > 0) {
            EXPECT_EQ(interp.Evaluate(kX[i]), kY[i + 1]) << "interior node " << i;
        }
    }
}

TEST(Interpolation, FlatTakesTheLeftNode) {
    Interp interp(kX, kY, zep::FlatInterpolation, zep::FlatExtrapolation);
    EXPECT_EQ(interp.Evaluate(1.9), kY[1]);
    EXPECT_EQ(interp.Evaluate(2.0), kY[2]);
}

TEST(Interpolation, LinearXYIsLinearInTheProduct) {
    Interp interp({1.0, 3.0}, {2.0, 4.0}, zep::LinearXYInterpolation, zep::FlatExtrapolation);
    // x*y runs from 2 to 12: at x = 2 the product is 7.
    EXPECT_NEAR(interp.Evaluate(2.0), 3.5, 1e-15);
}

TEST(Interpolation, LogLinearIsGeometric) {
    Interp interp({0.0, 2.0}, {1.0, 0.81}, zep::LogLinearInterpolation, zep::FlatExtrapolation);
    EXPECT_NEAR(interp.Evaluate(1.0), 0.9, 1e-15);
}

TEST(Interpolation, LagrangeReproducesAQuartic) {
    auto f = [](double x) { return 1 - 2 * x + 0.5 * x * x * x - 0.1 * x * x * x * x; };
    std::vector<double> y;
    for (double x : kX) y.push_back(f(x));
    Interp interp(kX, y, zep::LagrangeInterpolation, zep::FlatExtrapolation);
    for (double x : {0.7, 1.3, 2.9, 4.4}) EXPECT_NEAR(interp.Evaluate(x), f(x), 1e-12) << x;
}

TEST(Interpolation, CubicReproducesThreeEvenlySpacedCollinearNodes) {
    Interp interp({1.0, 2.0, 3.0}, {0.5, 1.5, 2.5}, zep::CubicInterpolation, zep::FlatExtrapolation);
    for (double x : {1.25, 1.9, 2.0, 2.7}) EXPECT_NEAR(interp.Evaluate(x), x - 0.5, 1e-15) << x;
}

TEST(Interpolation, ClampedCubicReproducesACubicWithItsEndSlopes) {
    auto f = [](double x) { return 0.3 - x + 0.25 * x * x - 0.04 * x * x * x; };
    auto df = [](double x) { return -1 + 0.5 * x - 0.12 * x * x; };
    std::vector<double> y;
    for (double x : kX) y.push_back(f(x));
    Interp interp(kX, y, zep::ClampedCubicInterpolation, zep::FlatExtrapolation, {}, df(kX.front()),
                  df(kX.back()));
    for (double x : {0.6, 1.5, 3.0, 4.9}) EXPECT_NEAR(interp.Evaluate(x), f(x), 1e-13) << x;
}

// End slopes given after construction reach the clamped spline: with the slopes of a cubic it
// reproduces that cubic; autoSetBoundaryDerivatives on the parabola x^2 (evenly spaced ends)
// gives its exact slopes, so the spline reproduces the parabola.
TEST(Interpolation, ClampedCubicFollowsEndSlopesSetLater) {
    auto f = [](double x) { return 0.3 - x + 0.25 * x * x - 0.04 * x * x * x; };
    auto df = [](double x) { return -1 + 0.5 * x - 0.12 * x * x; };
    std::vector<double> y;
    for (double x : kX) y.push_back(f(x));
    Interp interp(kX, y, zep::ClampedCubicInterpolation, zep::FlatExtrapolation, {}, 0.0, 0.0);
    interp.SetBoundaryDerivatives(df(kX.front()), df(kX.back()));
    for (double x : {0.6, 1.5, 3.0, 4.9}) EXPECT_NEAR(interp.Evaluate(x), f(x), 1e-13) << x;

    Interp parabola({0.0, 1.0, 2.0, 3.0}, {0.0, 1.0, 4.0, 9.0}, zep::ClampedCubicInterpolation, zep::CubicExtrapolation);
    parabola.autoSetBoundaryDerivatives();
    for (double x : {0.5, 1.25, 2.9}) EXPECT_NEAR(parabola.Evaluate(x), x * x, 1e-14) << x;
}

// Natural spline through (0, 0), (1, 1), (2, 4): the one inner curvature solves
// 2/3 M1 = (4 - 1) - (1 - 0), so M1 = 3, and at each mid-interval point the spline is the chord
// less (3/8) M1 / 6 = 0.1875.
TEST(Interpolation, LoadedSettingsSwitchToTheSpline) {
    Interp cubic({0.0, 1.0, 2.0}, {0.0, 1.0, 4.0}, zep::CubicInterpolation, zep::FlatExtrapolation);
    boost::property_tree::ptree fields;
    cubic.SaveSettings(fields);
    Interp loaded({0.0, 1.0, 2.0}, {0.0, 1.0, 4.0}, zep::LinearInterpolation, zep::FlatExtrapolation);
    loaded.LoadSettings(fields);
    EXPECT_NEAR(loaded.Evaluate(0.5), 0.3125, 1e-15);
    EXPECT_NEAR(loaded.Evaluate(1.5), 2.3125, 1e-15);
}

// A spline that cannot be solved is refused where it is evaluated, not when the interpolator is
// built: a region using another method still evaluates.
TEST(Interpolation, UnsolvableSplineFailsOnlyWhereItIsUsed) {
    const Interp interp({0.0, 1e-11, 1.0, 2.0}, {1.0, 2.0, 3.0, 4.0}, zep::LinearInterpolation, zep::FlatExtrapolation,
                        {{1.0, zep::CubicInterpolation}});
    EXPECT_NEAR(interp.Evaluate(0.5), 2.0 + (0.5 - 1e-11) / (1.0 - 1e-11), 1e-15);
    EXPECT_EQ(zep::testing::FailureText([&] { interp.Evaluate(1.5); }), "interpolate1d3Spline: Bad X array");
}

TEST(Interpolation, RegionMapSwitchesMethodAtItsThreshold) {
    Interp interp({1.0, 2.0, 3.0}, {1.0, 2.0, 4.0}, zep::LinearInterpolation, zep::FlatExtrapolation,
                  {{2.0, zep::LogLinearInterpolation}});
    EXPECT_NEAR(interp.Evaluate(1.5), 1.5, 1e-15);
    EXPECT_NEAR(interp.Evaluate(2.5), std::sqrt(8.0), 1e-14);
}

TEST(Interpolation, ExtrapolationSettings) {
    const std::vector<double> x = {1.0, 2.0, 4.0}, y = {1.0, 3.0, 4.0};
    EXPECT_EQ(Interp(x, y, zep::CubicInterpolation, zep::FlatExtrapolation).Evaluate(0.0), 1.0);
    EXPECT_EQ(Interp(x, y, zep::CubicInterpolation, zep::FlatExtrapolation).Evaluate(9.0), 4.0);
    // Linear in the values, whatever the method.
    Interp linear(x, y, zep::LogLinearInterpolation, zep::LinearExtrapolation);
    EXPECT_NEAR(linear.Evaluate(0.5), 0.0, 1e-15);
    EXPECT_NEAR(linear.Evaluate(6.0), 5.0, 1e-15);
    EXPECT_EQ(zep::testing::FailureText([&] { Interp(x, y, zep::LinearInterpolation, zep::NoExtrapolation).Evaluate(0.5); }),
              "Extrapolation not possible");
}

TEST(Interpolation, TaylorFailsOnlyWhenUsed) {
    Interp interp(kX, kY, zep::LinearInterpolation, zep::TaylorExtrapolation);
    EXPECT_NEAR(interp.Evaluate(1.5), 0.0275, 1e-15);
    EXPECT_EQ(zep::testing::FailureText([&] { interp.Evaluate(7.0); }), "Wrong extrapolation method");
    EXPECT_EQ(zep::testing::FailureText([&] { Interp(kX, kY, zep::LinearInterpolation, ExtrapolationMethod(9)).Evaluate(0.1); }),
              "Wrong extrapolation method");
}

// Cubic extrapolation without node slopes: the cubic matches the end value and the end
// segment's slope and has zero second derivative there.
TEST(Interpolation, CubicExtrapolationContinuesTheEndSegment) {
    const std::vector<double> x = {1.0, 2.0, 4.0}, y = {1.0, 3.0, 4.0};
    Interp interp(x, y, zep::LinearInterpolation, zep::CubicExtrapolation);
    EXPECT_NEAR(interp.Evaluate(0.5), 0.0, 1e-14);   // slope 2 from (1, 1)
    EXPECT_NEAR(interp.Evaluate(6.0), 5.0, 1e-14);   // slope 0.5 from (4, 4)
}

// With node slopes d1, d2 below the first node (h = 1): c = (y1 - h*d1 - y0 - (d2-d1)h/2)/(h^3 - 1.5h^2),
// b = ((d2-d1) - 3ch)/(2h); the literal values follow from that definition.
TEST(Interpolation, CubicExtrapolationUsesNodeSlopes) {
    Interp interp({0.0, 1.0, 2.0}, {0.0, 1.0, 4.0}, zep::LinearInterpolation, zep::CubicExtrapolation);
    interp.SetNodeSlopes({0.0, 2.0, 4.0});
    // Below: d1 = 0, d2 = 2 -> c = (1 - 0 - 0 - 1)/(-0.5) = 0, b = 1: y = u^2.
    EXPECT_NEAR(interp.Evaluate(-1.5), 2.25, 1e-14);
    // Above: h = 1, d0 = 2, d1 = 4, diff 2 -> c = (4 - 3 - 1)/(-0.5) = 0, b = 1: 4 + 4u + u^2.
    EXPECT_NEAR(interp.Evaluate(3.0), 9.0, 1e-14);
}

TEST(Interpolation, CubicExtrapolationGuardsCloseEndNodes) {
    Interp interp({0.0, 1e-9, 2.0}, {1.0, 2.0, 3.0}, zep::LinearInterpolation, zep::CubicExtrapolation);
    EXPECT_EQ(interp.Evaluate(-1.0), 1.0);
}

TEST(Interpolation, BoundaryDerivativesFollowTheExtrapolation) {
    const std::vector<double> x = {0.0, 1.0, 2.0, 3.0}, y = {0.0, 1.0, 4.0, 9.0};
    Interp cubic(x, y, zep::ClampedCubicInterpolation, zep::CubicExtrapolation);
    cubic.autoSetBoundaryDerivatives();
    // Second-order one-sided differences are exact for the parabola x^2.
    EXPECT_NEAR(cubic.LeftDerivative(), 0.0, 1e-15);
    EXPECT_NEAR(cubic.RightDerivative(), 6.0, 1e-15);
    Interp linear(x, y, zep::ClampedCubicInterpolation, zep::LinearExtrapolation);
    linear.autoSetBoundaryDerivatives();
    EXPECT_EQ(linear.LeftDerivative(), 1.0);
    EXPECT_EQ(linear.RightDerivative(), 5.0);
    Interp flat(x, y, zep::ClampedCubicInterpolation, zep::FlatExtrapolation, {}, 3.0, 3.0);
    flat.autoSetBoundaryDerivatives();
    EXPECT_EQ(flat.LeftDerivative(), 0.0);
    EXPECT_EQ(flat.RightDerivative(), 0.0);
    Interp two({0.0, 2.0}, {1.0, 2.0}, zep::ClampedCubicInterpolation, zep::CubicExtrapolation);
    two.autoSetBoundaryDerivatives();
    EXPECT_EQ(two.LeftDerivative(), 0.5);
}

TEST(Interpolation, BoundaryDerivativesRejectARepeatedEndNode) {
    Interp interp({1.0, 1.0, 2.0}, {0.0, 1.0, 2.0}, zep::LinearInterpolation, zep::LinearExtrapolation);
    try {
        interp.autoSetBoundaryDerivatives();
        FAIL() << "no failure";
    } catch (const zep::Error& e) {
        EXPECT_EQ(e.Message(), "Invalid interpolation X vector");
        EXPECT_NE(std::string(e.what()).find(
                      "zep::Interpolation<double,double,double>::autoSetBoundaryDerivatives"),
                  std::string::npos);
    }
}

TEST(Interpolation, DataFailures) {
    EXPECT_EQ(zep::testing::FailureText([] { Interp({}, {}, zep::LinearInterpolation, zep::FlatExtrapolation).Evaluate(1); }),
              "Interpolation: empty data");
    EXPECT_EQ(zep::testing::FailureText([] { Interp({1, 2}, {1}, zep::LinearInterpolation, zep::FlatExtrapolation).Evaluate(1); }),
              "Interpolation: Data dimensions don't match");
    EXPECT_EQ(zep::testing::FailureText([] { Interp(kX, kY, InterpolationMethod(9), zep::FlatExtrapolation).Evaluate(1.5); }),
              "Wrong method");
    EXPECT_EQ(zep::testing::FailureText([] { Interp({0, 1e-11, 1}, {1, 2, 3}, zep::CubicInterpolation, zep::FlatExtrapolation).Evaluate(0.5); }),
              "interpolate1d3Spline: Bad X array");
    EXPECT_EQ(zep::testing::FailureText([] { Interp({0, 1, 1, 2}, {1, 2, 2, 3}, zep::ClampedCubicInterpolation, zep::FlatExtrapolation).Evaluate(0.5); }),
              "cubicInterpolation: Bad X array");
}

// At t = 0 and t = 1 of every interval the "ffq" weights reduce to the node values; its weights
// sum to one and reproduce linear functions, so a flat continuous rate equal to the short rate
// gives exactly linear minus log discount factors.
TEST(Interpolation, FFQReproducesAFlatContinuousCurve) {
    const std::vector<double> x = {0.0, 0.25, 0.5, 1.0, 2.0, 5.0};
    std::vector<double> df;
    for (double t : x) df.push_back(std::exp(-0.03 * t));
    Interp interp(x, df, zep::FFQInterpolation, zep::NoExtrapolation);
    interp.SetShortRate(0.03);
    for (std::size_t i = 1; i < x.size(); ++i) EXPECT_NEAR(interp.Evaluate(x[i]), df[i], 1e-15);
    EXPECT_NEAR(interp.Evaluate(10.0), std::exp(-0.3), 1e-14);
    for (double t : {-0.5, 0.1, 0.3, 0.7, 1.5, 3.0, 4.5}) EXPECT_NEAR(interp.Evaluate(t), std::exp(-0.03 * t), 1e-14) << t;
}

// The short-rate term vanishes at s = 0 and s = 1 and adds (AB/(A+B)) q s(1-s)(3s^2-5s+1+A/B)
// to minus log DF in the first interval.
TEST(Interpolation, FFQShortRateShiftsTheFirstInterval) {
    const std::vector<double> x = {0.0, 1.0, 2.0, 3.0};
    const std::vector<double> df = {1.0, 0.97, 0.94, 0.91};
    Interp without(x, df, zep::FFQInterpolation, zep::NoExtrapolation);
    Interp with(x, df, zep::FFQInterpolation, zep::NoExtrapolation);
    with.SetShortRate(0.05);
    const double s = 0.5, A = 365.0, B = 730.0, q = 0.05 / 365.0;
    const double term = A * B / (A + B) * q * s * (1 - s) * (3 * s * s - 5 * s + 1 + A / B);
    EXPECT_NEAR(-std::log(with.Evaluate(0.5)) + std::log(without.Evaluate(0.5)), term, 1e-15);
}

TEST(Interpolation, TwoDimensionalMethods) {
    const std::vector<double> x = {0.0, 1.0, 2.0}, y = {10.0, 20.0};
    const std::vector<std::vector<double>> z = {{1, 2}, {3, 4}, {5, 8}};
    using zep::FlatExtrapolation;
    EXPECT_NEAR(Interp(x, y, z, zep::LinearInterpolation, FlatExtrapolation).Evaluate(1.5, 15.0), 5.0, 1e-15);
    // Bilinear continues the edge cell outside the grid.
    EXPECT_NEAR(Interp(x, y, z, zep::LinearInterpolation, FlatExtrapolation).Evaluate(3.0, 10.0), 7.0, 1e-15);
    EXPECT_EQ(Interp(x, y, z, zep::FlatInterpolation, FlatExtrapolation).Evaluate(1.9, 25.0), 4.0);
    EXPECT_EQ(Interp(x, y, z, zep::ClosestInterpolation, FlatExtrapolation).Evaluate(1.5, 15.0), 3.0);
    EXPECT_EQ(Interp(x, y, z, zep::ClosestInterpolation, FlatExtrapolation).Evaluate(1.6, 16.0), 8.0);
    // z = 1 + 2x + 0.1(y - 10) + ... fits bilinear exactly except the corner: Lagrange through all.
    EXPECT_NEAR(Interp(x, y, z, zep::LagrangeInterpolation, FlatExtrapolation).Evaluate(2.0, 20.0), 8.0, 1e-14);
}

TEST(Interpolation, TwoDimensionalFailures) {
    const std::vector<double> x = {0.0, 1.0}, y = {10.0, 20.0};
    const std::vector<std::vector<double>> z = {{1, 2}, {3, 4}};
    auto at = [&](std::uint32_t method) {
        return zep::testing::FailureText([&] { Interp(x, y, z, InterpolationMethod(method), zep::FlatExtrapolation).Evaluate(0.5, 15); });
    };
    for (std::uint32_t m : {3u, 4u, 8u}) EXPECT_EQ(at(m), "Interpolation: Methods not implemented in 2D");
    EXPECT_EQ(at(6), "2D Cubic interpolation not available");
    EXPECT_EQ(at(7), "Wrong method");
    EXPECT_EQ(zep::testing::FailureText([&] { Interp(x, y, {{1, 2}}, zep::LinearInterpolation, zep::FlatExtrapolation).Evaluate(0, 0); }),
              "Interpolation: Data dimensions don't match");
    EXPECT_EQ(zep::testing::FailureText([&] { Interp(x, y, {}, zep::LinearInterpolation, zep::FlatExtrapolation).Evaluate(0, 0); }),
              "Interpolation: empty data");
}

TEST(Interpolation, IntegerAbscissaInterpolatesBetweenWholeNodes) {
    zep::Interpolation<int, double, double> interp({1, 3}, {10.0, 20.0}, zep::LinearInterpolation,
                                                   zep::FlatExtrapolation);
    EXPECT_EQ(interp.Evaluate(2.0), 15.0);
    EXPECT_EQ(interp.Evaluate(2.5), 17.5);
}

TEST(InterpolationText, CanonicalNamesRoundTripAndAliasesParse) {
    for (std::uint32_t code = 0; code < 9; ++code) {
        EXPECT_EQ(zep::stringToInterpolationMethod(zep::InterpolationMethodToString(code)), code);
        EXPECT_EQ(zep::stringToInterpolationMethod(std::to_string(code)), code);
    }
    for (std::uint32_t code = 0; code < 5; ++code)
        EXPECT_EQ(zep::stringToExtrapolationMethod(zep::ExtrapolationMethodToString(code)), code);
    EXPECT_EQ(zep::stringToInterpolationMethod("Explicit Clamped Cubic"), 8u);
    EXPECT_EQ(zep::stringToInterpolationMethod("LAGRANGEPOLYNOMIAL"), 5u);
    EXPECT_EQ(zep::stringToExtrapolationMethod("Taylor"), 3u);
    EXPECT_EQ(zep::testing::FailureText([] { zep::InterpolationMethodToString(9); }),
              "Interpolation method is an invalid enumeration: 9");
    EXPECT_EQ(zep::testing::FailureText([] { zep::ExtrapolationMethodToString(5); }),
              "Extrapolation method is an invalid enumeration: 5");
}

}  // namespace

namespace {

// Independent reference: find the interval by walking the nodes.
double ReferenceLinear(const std::vector<double>& x, const std::vector<double>& y, double p) {
    std::size_t i = 0;
    while (i + 2 < x.size() && p >= x[i + 1]) ++i;
    return y[i] + (y[i + 1] - y[i]) / (x[i + 1] - x[i]) * (p - x[i]);
}

class RandomNodes : public ::testing::TestWithParam<unsigned> {};

// Pillars bunch at the short end (days apart) and spread to decades: the interval search must
// still match a plain walk, on the nodes themselves too, and the array form the point form.
TEST_P(RandomNodes, LinearMatchesAWalkAndTheArrayFormMatchesThePointForm) {
    std::mt19937_64 rng(GetParam());
    std::uniform_real_distribution<double> uniform(0.0, 1.0);
    std::vector<double> x = {0.0}, y;
    const std::size_t n = 3 + GetParam() % 40;
    while (x.size() < n) x.push_back(x.back() + std::pow(10.0, -3.0 + 4.0 * uniform(rng)));
    for (std::size_t i = 0; i < n; ++i) y.push_back(uniform(rng));
    const Interp interp(x, y, zep::LinearInterpolation, zep::FlatExtrapolation);
    std::vector<double> points(x.begin(), x.end());
    for (int k = 0; k < 2000; ++k) points.push_back(-0.1 + (x.back() + 0.2) * uniform(rng));
    std::vector<double> batch(points.size());
    interp.Evaluate(points.data(), batch.data(), points.size());
    for (std::size_t k = 0; k < points.size(); ++k) {
        const double p = points[k];
        const double expected = p <= x.front() ? y.front() : p >= x.back() ? y.back() : ReferenceLinear(x, y, p);
        ASSERT_EQ(interp.Evaluate(p), expected) << "seed " << GetParam() << " point " << p;
        ASSERT_EQ(batch[k], expected) << "seed " << GetParam() << " point " << p;
    }
}
INSTANTIATE_TEST_SUITE_P(Seeds, RandomNodes, ::testing::Range(1u, 21u),
                         [](const ::testing::TestParamInfo<unsigned>& info) { return "Seed" + std::to_string(info.param); });

}  // namespace
