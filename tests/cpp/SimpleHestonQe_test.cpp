#include <gtest/gtest.h>

#include <cmath>
#include <string>
#include <vector>

#include "lum-monte-carlo/BasicRanGen.hpp"
#include "lum-monte-carlo/SimpleHeston.hpp"

namespace zep {
namespace {

struct HestonCase {
    const char* name;
    std::vector<double> parameters;  // kappa, theta, xi, rho, v0
};

class QuadraticExponentialHeston : public ::testing::TestWithParam<HestonCase> {};

// The martingale correction makes E[S_T] the forward exactly whatever the step: checked with
// monthly steps under strong correlations, a volatility of variance far past Feller's bound
// (the variance sits at 0 often, the exponential law's mass) and none at all.
TEST_P(QuadraticExponentialHeston, KeepsTheForwardAtEveryDate) {
    const ModelInputs inputs{100.0, 0.0, 0.05, 0.01, GetParam().parameters, {}, 0.0};
    SimpleHeston<double> model(inputs);
    std::vector<double> times;
    for (int month = 1; month <= 24; ++month) times.push_back(month / 12.0);
    model.SetGrid(times);
    const std::size_t steps = times.size(), paths = 100000;
    std::vector<double> normals(2 * steps), spots(steps), sum(steps, 0.0), sumOfSquares(steps, 0.0);
    BasicRanGen generator(11);
    for (std::size_t p = 0; p < paths; ++p) {
        generator.NextPath(normals.data(), normals.size());
        model.SimulatePath(normals.data(), spots.data());
        for (std::size_t i = 0; i < steps; ++i) {
            ASSERT_TRUE(std::isfinite(spots[i]) && spots[i] > 0.0);
            sum[i] += spots[i];
            sumOfSquares[i] += spots[i] * spots[i];
        }
    }
    for (const std::size_t i : {std::size_t{0}, std::size_t{11}, steps - 1}) {
        const double mean = sum[i] / paths;
        const double standardError = std::sqrt((sumOfSquares[i] / paths - mean * mean) / paths);
        EXPECT_NEAR(mean, 100.0 * std::exp(0.04 * times[i]), 4.0 * standardError) << "at " << times[i] << " years";
    }
}

INSTANTIATE_TEST_SUITE_P(
    Models, QuadraticExponentialHeston,
    ::testing::Values(HestonCase{"NegativeCorrelation", {1.5, 0.04, 0.6, -0.9, 0.04}},
                      HestonCase{"PositiveCorrelation", {1.5, 0.04, 0.6, 0.7, 0.04}},
                      HestonCase{"FellerViolated", {0.5, 0.04, 1.5, -0.5, 0.09}},
                      HestonCase{"NoVolOfVariance", {2.0, 0.04, 0.0, -0.5, 0.09}},
                      HestonCase{"NoMeanReversion", {0.0, 0.04, 0.5, -0.3, 0.04}}),
    [](const ::testing::TestParamInfo<HestonCase>& info) { return std::string(info.param.name); });

}  // namespace
}  // namespace zep
