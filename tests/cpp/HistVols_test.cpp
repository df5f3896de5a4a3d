#include <gtest/gtest.h>

#include "ParamNames.hpp"

#include "FailureText.hpp"

#include <cmath>
#include <random>
#include <string>
#include <vector>

#include "lum-auxiliary/Error.hpp"
#include "lum-closed-form/HistVols.hpp"

namespace zep {
namespace {

std::vector<Date> Days(std::size_t count) {
    std::vector<Date> dates;
    for (std::size_t i = 0; i < count; ++i) dates.push_back(Date(45000 + static_cast<int>(i)));
    return dates;
}

std::vector<double> RandomWalk(std::size_t count, unsigned seed) {
    std::mt19937 generator(seed);
    std::normal_distribution<double> shock(0.0, 0.01);
    std::vector<double> prices{100.0};
    while (prices.size() < count) prices.push_back(prices.back() * std::exp(shock(generator)));
    return prices;
}

// Textbook two-pass sample standard deviation, independent of the library's one-pass sums.
double SampleStdDev(const std::vector<double>& x) {
    double mean = 0.0;
    for (double v : x) mean += v / static_cast<double>(x.size());
    double squares = 0.0;
    for (double v : x) squares += (v - mean) * (v - mean);
    return std::sqrt(squares / static_cast<double>(x.size() - 1));
}


TEST(HistVols, EqualWeightsIsTheAnnualisedSampleDeviationOfEachWindow) {
    const std::vector<double> prices = RandomWalk(30, 3);
    HistVols history(Days(prices.size()), prices);
    const int window = 10;
    const std::vector<double> vols = history.setAll(window, HistVols::EqualWeights, 0.94, HistVols::LogReturns, 252.0);
    ASSERT_EQ(vols.size(), prices.size() - 1 - window + 1);
    for (std::size_t w = 0; w < vols.size(); ++w) {
        std::vector<double> returns;
        for (std::size_t i = w; i < w + window; ++i) returns.push_back(std::log(prices[i + 1] / prices[i]));
        EXPECT_NEAR(vols[w], SampleStdDev(returns) * std::sqrt(252.0), 1e-12) << "window " << w;
        EXPECT_EQ(history.VolDates()[w], Date(45000 + static_cast<int>(w + window)));
    }
}

TEST(HistVols, SimpleReturnsAreRelativePriceChanges) {
    // Returns +10%, -10%, +10%, neither annualised nor log.
    HistVols history(Days(4), {100.0, 110.0, 99.0, 108.9});
    const double r[] = {0.1, -0.1, 0.1};
    const double mean = 0.1 / 3.0;
    double squares = 0.0;
    for (double x : r) squares += (x - mean) * (x - mean);
    EXPECT_NEAR(history.GetVol(3, HistVols::EqualWeights, 0.0, HistVols::SimpleReturns, 1.0),
                std::sqrt(squares / 2.0), 1e-12);
}

TEST(HistVols, ExactlySampleNumReturnsGiveOneVolatility) {
    HistVols history(Days(6), {10, 11, 10.5, 10.8, 11.2, 11.0});
    EXPECT_EQ(history.setAll(5).size(), 1u);
    EXPECT_EQ(history.VolDates().front(), Date(45005));
    EXPECT_DOUBLE_EQ(history.Vols().front(), history.GetVol(5));
}

class ExponentialWeights : public ::testing::TestWithParam<double> {};

TEST_P(ExponentialWeights, RecursionAndNormalisedWeightsDifferByTheMissingMass) {
    const double lambda = GetParam();
    const std::vector<double> prices = RandomWalk(25, 5);
    HistVols history(Days(prices.size()), prices);
    const int n = 12;
    std::vector<double> returns;
    for (std::size_t i = prices.size() - 1 - n; i + 1 < prices.size(); ++i)
        returns.push_back(std::log(prices[i + 1] / prices[i]));
    // Explicit weights (1 - lambda) lambda^(n - i) / (1 - lambda^n), latest return weighted most.
    double variance = 0.0;
    for (int i = 1; i <= n; ++i)
        variance += (1 - lambda) * std::pow(lambda, n - i) / (1 - std::pow(lambda, n)) * returns[i - 1] * returns[i - 1];
    const double normalised = history.GetVol(n, HistVols::EwmaNormalised, lambda, HistVols::LogReturns, 252.0);
    EXPECT_NEAR(normalised, std::sqrt(variance * 252.0), 1e-12);
    const double recursion = history.GetVol(n, HistVols::EwmaRecursion, lambda, HistVols::LogReturns, 252.0);
    EXPECT_NEAR(recursion * recursion, normalised * normalised * (1 - std::pow(lambda, n)), 1e-12);
}

INSTANTIATE_TEST_SUITE_P(HistVols, ExponentialWeights, ::testing::Values(0.0, 0.5, 0.94, 0.97, 0.999),
                         [](const ::testing::TestParamInfo<double>& info) {
                             return "Lambda" + zep::testing::NameOf(info.param);
                         });

TEST(HistVols, ReportsEveryBadInput) {
    EXPECT_EQ(zep::testing::ErrorMessage([] { HistVols(Days(3), {1.0, 2.0}); }), "dates and quotes not same size!");
    EXPECT_EQ(zep::testing::ErrorMessage([] { HistVols(Days(2), {1.0, 2.0}); }),
              "HistVols: need at least 3 price observations for historical volatility");
    HistVols history(Days(5), {1.0, 1.1, 1.2, 1.1, 1.0});
    EXPECT_EQ(zep::testing::ErrorMessage([&] { history.setAll(1); }), "not enough return samples");
    EXPECT_EQ(zep::testing::ErrorMessage([&] { history.setAll(5); }), "not enough return samples");
    EXPECT_EQ(zep::testing::ErrorMessage([&] { history.setAll(2, 3); }), "unknown HistVols model");
    for (double lambda : {1.0, -0.1, std::nan("")}) {
        EXPECT_EQ(zep::testing::ErrorMessage([&] { history.setAll(2, HistVols::EwmaRecursion, lambda); }), "lambda must be in [0,1)");
        EXPECT_EQ(zep::testing::ErrorMessage([&] { history.GetVol(2, HistVols::EwmaNormalised, lambda); }), "lambda must be in [0,1)");
    }
    // A lambda this close to one loses the weights' normalisation to rounding.
    EXPECT_EQ(zep::testing::ErrorMessage([&] { history.GetVol(3, HistVols::EwmaNormalised, 1.0 - 1e-10); }),
              "invalid weights normalization");
    EXPECT_EQ(zep::testing::ErrorMessage([&] { history.GetVol(5); }),
              "HistVols::GetVol: not enough price observations for requested window");
    HistVols withZero(Days(4), {1.0, 0.0, 1.2, 1.1});
    EXPECT_EQ(zep::testing::ErrorMessage([&] { withZero.setAll(2); }), "Price<=0");
    EXPECT_EQ(zep::testing::ErrorMessage([&] { withZero.GetVol(2, 0, 0.94, HistVols::SimpleReturns); }), "Price<=0");
}

}  // namespace
}  // namespace zep
