// The interpolation engine at the edges of the double range: node values from 1e-300 to 1e300,
// nodes 1e-10 apart, negative rates under methods that take logarithms. A value is a finite
// number or a std::runtime_error that says why, never inf or NaN.
#include <gtest/gtest.h>

#include <stdexcept>
#include <string>
#include <vector>

#include "lum-auxiliary/Interpolation.hpp"

namespace {

using Interp = zep::Interpolation<double, double, double>;

std::string Refusal(const Interp& interpolation, double x) {
    try {
        interpolation.Evaluate(x);
    } catch (const std::runtime_error& e) {
        return e.what();
    }
    return "(no failure)";
}

// A spike of 1e300 a 1e-10 step from values of 1e-300: the slope, 1e310, is no double.
const std::vector<double> kSpikeX = {0.0, 1e-10, 1.0};
const std::vector<double> kSpikeY = {1e-300, 1e300, 1e-300};

TEST(InterpolationExtremes, LinearValuesStayFiniteWhereTheSlopeIsNot) {
    const Interp linear(kSpikeX, kSpikeY, zep::LinearInterpolation, zep::LinearExtrapolation);
    EXPECT_DOUBLE_EQ(linear.Evaluate(0.5e-10), 0.5e300);
    EXPECT_DOUBLE_EQ(linear.Evaluate(0.5 + 0.5e-10), 0.5e300);
    // Before the first node the line through the spike falls to -1e300 within another 1e-10.
    EXPECT_DOUBLE_EQ(linear.Evaluate(-0.5e-10), -0.5e300);
    const double points[] = {0.5e-10, 0.5 + 0.5e-10};
    double values[2];
    linear.Evaluate(points, values, 2);
    EXPECT_DOUBLE_EQ(values[0], 0.5e300);
    EXPECT_DOUBLE_EQ(values[1], 0.5e300);
}

TEST(InterpolationExtremes, ValueBeyondDoublePrecisionRaisesNamingItsPoint) {
    // Extrapolating that line a tenth of a year before the first node reaches -1e309.
    const Interp linear(kSpikeX, kSpikeY, zep::LinearInterpolation, zep::LinearExtrapolation);
    EXPECT_EQ(Refusal(linear, -0.1), "Interpolation: the linear value at -0.1 cannot be represented in double precision");
    const double points[] = {0.5e-10, -0.1};
    double values[2];
    EXPECT_THROW(linear.Evaluate(points, values, 2), std::runtime_error);
}

TEST(InterpolationExtremes, SplineBentBeyondDoublePrecisionIsABadTable) {
    EXPECT_EQ(Refusal(Interp(kSpikeX, kSpikeY, zep::CubicInterpolation, zep::FlatExtrapolation), 1e-10),
              "interpolate1d3Spline: curvature beyond double precision");
    EXPECT_EQ(Refusal(Interp(kSpikeX, kSpikeY, zep::ClampedCubicInterpolation, zep::FlatExtrapolation), 1e-10),
              "cubicInterpolation: curvature beyond double precision");
}

TEST(InterpolationExtremes, LogarithmicMethodsRefuseValuesThatAreNotPositive) {
    const std::vector<double> x = {0.0, 1e-10, 50.0}, rates = {-0.5, -0.5, -0.5};
    EXPECT_EQ(Refusal(Interp(x, rates, zep::LogLinearInterpolation, zep::FlatExtrapolation), 1.0),
              "Interpolation: loglinear interpolation needs positive values");
    EXPECT_EQ(Refusal(Interp(x, rates, zep::FFQInterpolation, zep::FlatExtrapolation), 1e-10),
              "Interpolation: ffq interpolation needs positive values");
}

}  // namespace
