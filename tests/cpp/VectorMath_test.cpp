#include "lum-auxiliary/VectorMath.hpp"

#include <gtest/gtest.h>

#include <cmath>
#include <string>
#include <vector>

namespace {

using zep::ExpInPlace;
using zep::LogInPlace;
using zep::SqrtInPlace;

// Arrays of every length up to three full vectors: the lanes and the padded tail must give each
// element the value the scalar function gives, to within the vector library's 4 ulp, whatever
// its position.
class VectorMathLengths : public ::testing::TestWithParam<std::size_t> {};

std::vector<double> Arguments(std::size_t count, double first, double step) {
    std::vector<double> values(count);
    for (std::size_t i = 0; i < count; ++i) values[i] = first + step * static_cast<double>(i);
    return values;
}

void ExpectWithinUlps(const std::vector<double>& actual, const std::vector<double>& arguments, double (*scalar)(double),
                      int ulps) {
    for (std::size_t i = 0; i < actual.size(); ++i) {
        const double expected = scalar(arguments[i]);
        EXPECT_NEAR(actual[i], expected, ulps * std::abs(std::nextafter(expected, 2 * expected) - expected))
            << "element " << i << " of " << actual.size();
    }
}

TEST_P(VectorMathLengths, AgreeWithTheScalarFunctions) {
    const std::size_t count = GetParam();
    const std::vector<double> exponents = Arguments(count, -7.3, 0.61);
    std::vector<double> values = exponents;
    ExpInPlace(values.data(), count);
    ExpectWithinUlps(values, exponents, [](double x) { return std::exp(x); }, 4);

    const std::vector<double> positives = Arguments(count, 1e-3, 0.37);
    values = positives;
    LogInPlace(values.data(), count);
    ExpectWithinUlps(values, positives, [](double x) { return std::log(x); }, 4);

    values = positives;
    SqrtInPlace(values.data(), count);
    for (std::size_t i = 0; i < count; ++i) EXPECT_EQ(values[i], std::sqrt(positives[i]));
}

TEST(VectorMath, AnElementDoesNotDependOnItsPosition) {
    std::vector<double> shifted = Arguments(19, -2.0, 0.25);
    std::vector<double> alone(shifted.begin() + 5, shifted.begin() + 6);
    ExpInPlace(shifted.data(), shifted.size());
    ExpInPlace(alone.data(), 1);
    EXPECT_EQ(shifted[5], alone[0]);
}

INSTANTIATE_TEST_SUITE_P(UpToThreeVectors, VectorMathLengths, ::testing::Range<std::size_t>(0, 25),
                         [](const ::testing::TestParamInfo<std::size_t>& info) {
                             return std::to_string(info.param) + "Elements";
                         });

}  // namespace
