#include <gtest/gtest.h>

#include <cmath>
#include <string>
#include <vector>

#include "FailureText.hpp"
#include "zep-pde/DupireForwardPde.hpp"

namespace {

using zep::DupireForwardPde;
using zep::DupireMarket;

constexpr double kSpot = 1.10;

// Black's formula on a forward, the independent reference.
double Black(int optionType, double forward, double strike, double totalVolatility, double discount) {
    const auto normal = [](double x) { return 0.5 * std::erfc(-x / std::sqrt(2.0)); };
    const double d1 = std::log(forward / strike) / totalVolatility + 0.5 * totalVolatility;
    const double d2 = d1 - totalVolatility;
    const double phi = optionType == 0 ? 1.0 : -1.0;
    return discount * phi * (forward * normal(phi * d1) - strike * normal(phi * d2));
}

DupireMarket FlatRates(double rd, double rf, std::function<double(double, double)> localVolatility) {
    return {std::move(localVolatility), [=](double t) { return kSpot * std::exp((rd - rf) * t); },
            [=](double t) { return std::exp(-rd * t); }};
}

double FlatError(int nodes, int steps) {
    const DupireForwardPde pde(FlatRates(0.04, 0.015, [](double, double) { return 0.15; }), {1.0}, 0, nodes, steps);
    double worst = 0.0;
    for (const double strike : {0.95, 1.05, 1.10, 1.20, 1.30}) {
        const double exact = Black(0, kSpot * std::exp(0.025), strike, 0.15, std::exp(-0.04));
        worst = std::max(worst, std::abs(pde.Price(0, strike) - exact));
    }
    return worst;
}

// On 800 strikes and 800 steps the grid is within 1e-4 of Black-Scholes, relative, from the money
// to 1.5 standard deviations either side.
TEST(DupireForwardPde, FlatVolatilityGivesBlackScholesAtEveryStrikeAndExpiry) {
    const std::vector<double> expiries{0.25, 1.0};
    for (int type : {0, 1}) {
        const DupireForwardPde pde(FlatRates(0.04, 0.015, [](double, double) { return 0.15; }), expiries, type, 800, 800);
        for (std::size_t j = 0; j < expiries.size(); ++j)
            for (const double strike : {1.0, 1.05, 1.10, 1.15, 1.25}) {
                const double t = expiries[j];
                const double exact = Black(type, kSpot * std::exp(0.025 * t), strike, 0.15 * std::sqrt(t), std::exp(-0.04 * t));
                EXPECT_NEAR(pde.Price(j, strike), exact, 1e-4 * exact) << "type " << type << ", T " << t << ", K " << strike;
            }
    }
}

TEST(DupireForwardPde, ErrorFallsFourfoldWhenTheGridDoubles) {
    const double coarse = FlatError(100, 50), medium = FlatError(200, 100), fine = FlatError(400, 200);
    EXPECT_GT(coarse / medium, 3.0) << coarse << " " << medium;
    EXPECT_GT(medium / fine, 3.0) << medium << " " << fine;
    EXPECT_LT(fine, 1e-5);
}

// A volatility that varies in time only prices as Black-Scholes at the mean variance, and a
// forward curve that is not exponential brings a drift that varies step by step; within 2e-4
// relative out to 1.3 standard deviations.
TEST(DupireForwardPde, TimeVaryingVolatilityAndRatesPriceAtTheMeanVariance) {
    const auto volatility = [](double t, double) { return 0.10 + 0.08 * t; };
    const auto forward = [](double t) { return kSpot * std::exp(0.02 * t + 0.01 * t * t); };
    const auto discount = [](double t) { return std::exp(-0.03 * t - 0.005 * t * t); };
    const std::vector<double> expiries{0.5, 1.5};
    const DupireForwardPde pde({volatility, forward, discount}, expiries, 0, 800, 800);
    for (std::size_t j = 0; j < expiries.size(); ++j) {
        const double t = expiries[j];
        // The integral of (0.10 + 0.08 s)^2 over [0, t].
        const double variance = 0.01 * t + 0.008 * t * t + 0.0064 * t * t * t / 3.0;
        for (const double strike : {1.0, 1.1, 1.25}) {
            const double exact = Black(0, forward(t), strike, std::sqrt(variance), discount(t));
            EXPECT_NEAR(pde.Price(j, strike), exact, 2e-4 * exact) << "T " << t << ", K " << strike;
        }
    }
}

// A shifted lognormal, dS = sigma (S + d) dW with no carry, is a local volatility in the strike:
// sigma (K + d) / K, and its calls are Black's on the shifted forward and strike.
TEST(DupireForwardPde, StrikeDependentVolatilityMatchesTheShiftedLognormal) {
    const double shift = 0.4, sigma = 0.1, rate = 0.03;
    const DupireForwardPde pde(FlatRates(rate, rate, [=](double, double k) { return sigma * (k + shift) / k; }),
                               {1.0}, 0, 800, 800);
    for (const double strike : {0.9, 1.0, 1.1, 1.2, 1.35}) {
        const double exact = Black(0, kSpot + shift, strike + shift, sigma, std::exp(-rate));
        EXPECT_NEAR(pde.Price(0, strike), exact, 1e-4 * exact) << "K " << strike;
    }
}

TEST(DupireForwardPde, CallsLessPutsAreTheDiscountedForwardLessTheStrike) {
    const auto smile = [](double t, double k) { return 0.12 + 0.3 * std::pow(std::log(k / kSpot), 2) + 0.02 * t; };
    const std::vector<double> expiries{0.1, 0.7, 2.0};
    const DupireForwardPde calls(FlatRates(0.05, 0.01, smile), expiries, 0, 200, 100);
    const DupireForwardPde puts(FlatRates(0.05, 0.01, smile), expiries, 1, 200, 100);
    for (std::size_t j = 0; j < expiries.size(); ++j)
        for (const double strike : {0.8, 1.0, 1.1, 1.3, 1.6}) {
            const double t = expiries[j];
            const double parity = std::exp(-0.05 * t) * (kSpot * std::exp(0.04 * t) - strike);
            EXPECT_NEAR(calls.Price(j, strike) - puts.Price(j, strike), parity, 1e-6) << "T " << t << ", K " << strike;
        }
}

TEST(DupireForwardPde, BadInputIsRefusedWithItsReason) {
    const DupireMarket flat = FlatRates(0.02, 0.01, [](double, double) { return 0.1; });
    EXPECT_EQ(zep::testing::FailureText([&] { DupireForwardPde(flat, {0.5, 0.5}); }),
              "DupireForwardPde: expiries must be finite, positive and increasing");
    EXPECT_EQ(zep::testing::FailureText([&] { DupireForwardPde(flat, {1.0}, 0, 3); }),
              "DupireForwardPde: the grid needs at least 5 strike nodes, at most 100000");
    EXPECT_EQ(zep::testing::FailureText([&] { DupireForwardPde(flat, {0.1, 0.2, 0.3}, 0, 50, 2); }),
              "DupireForwardPde: the grid needs at least 2 time steps and one per expiry, at most 100000");
    EXPECT_EQ(zep::testing::FailureText([&] { DupireForwardPde(flat, {1.0}, 2); }),
              "DupireForwardPde: option type must be 0 (call) or 1 (put)");
    EXPECT_EQ(zep::testing::FailureText([&] { DupireForwardPde(DupireMarket{}, {1.0}); }),
              "DupireForwardPde: the local volatility, forward and discount functions are required");
    EXPECT_EQ(zep::testing::FailureText([] { DupireForwardPde(FlatRates(0.02, 0.01, [](double, double) { return 1e3; }), {1.0}); }),
              "DupireForwardPde: the local volatility at the money is too high for a strike grid");
    const DupireMarket broken = FlatRates(0.02, 0.01, [](double t, double) { return t > 0.5 ? NAN : 0.1; });
    EXPECT_NE(zep::testing::FailureText([&] { DupireForwardPde(broken, {1.0}); }).find("is not a finite non-negative number"),
              std::string::npos);
    const DupireForwardPde pde(flat, {1.0}, 0, 50, 20);
    EXPECT_NE(zep::testing::FailureText([&] { pde.Price(0, 100.0); }).find("lies outside the grid"), std::string::npos);
    EXPECT_NE(zep::testing::FailureText([&] { pde.Price(1, 1.1); }).find("beyond the 1 expiries"), std::string::npos);
}

}  // namespace
