#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <random>
#include <string>
#include <vector>

#include "lum-closed-form/BSVanilla.hpp"
#include "lum-closed-form/VanillaBook.hpp"

namespace zep {
namespace {

struct Columns {
    std::vector<double> type, strike, vol, expiry, delivery, rd, rf, spot;
    VanillaBookInputs Inputs() const { return {type, strike, expiry, delivery, rd, rf, spot}; }
};

// A seeded book with expired, zero-volatility, negative-spot and unknown-type rows sprinkled in,
// so that both the four-at-a-time path and the engine's own branches are exercised.
Columns SeededBook(std::size_t rows) {
    std::mt19937 generator(99);
    std::uniform_real_distribution<double> unit(0.0, 1.0);
    Columns c;
    for (std::size_t i = 0; i < rows; ++i) {
        const double spot = 50 + 100 * unit(generator);
        const double expiry = i % 37 == 0 ? 0.0 : 0.05 + 2 * unit(generator);
        c.type.push_back(i % 41 == 0 ? 2.0 : static_cast<double>(i % 2));
        c.strike.push_back(spot * (0.8 + 0.4 * unit(generator)));
        c.vol.push_back(i % 43 == 0 ? 0.0 : 0.05 + 0.5 * unit(generator));
        c.expiry.push_back(expiry);
        c.delivery.push_back(expiry + 0.01 * unit(generator));
        c.rd.push_back(0.06 * unit(generator));
        c.rf.push_back(0.06 * unit(generator));
        c.spot.push_back(i % 47 == 0 ? -1.0 : spot);
    }
    return c;
}

TEST(VanillaBook, EveryRowMatchesTheEngineOrIsNaNWhereTheEngineRefuses) {
    const Columns c = SeededBook(1003);
    const std::size_t n = c.type.size();
    std::vector<double> price(n), delta(n), gamma(n), vega(n), theta(n);
    PriceVanillaBook(c.Inputs(), c.vol, price, delta, gamma, vega, theta);
    for (std::size_t i = 0; i < n; ++i) {
        if (c.type[i] > 1.0 || c.vol[i] == 0.0 || c.spot[i] < 0.0) {
            EXPECT_TRUE(std::isnan(price[i]) && std::isnan(theta[i])) << "row " << i;
            continue;
        }
        BSVanilla engine(static_cast<int>(c.type[i]), c.strike[i], c.vol[i], c.expiry[i], c.delivery[i],
                         c.rd[i], c.rf[i], c.spot[i]);
        const double expected[] = {engine.Price(), engine.Delta(), engine.Gamma(), engine.Vega(), engine.Theta()};
        const double got[] = {price[i], delta[i], gamma[i], vega[i], theta[i]};
        for (int k = 0; k < 5; ++k)
            EXPECT_NEAR(got[k], expected[k], 1e-13 * (1 + std::fabs(expected[k]))) << "row " << i << " figure " << k;
    }
}

TEST(VanillaBook, ImpliedVolatilitiesMatchTheEngineSolver) {
    Columns c = SeededBook(1001);
    const std::size_t n = c.type.size();
    std::vector<double> premium(n), vols(n);
    for (std::size_t i = 0; i < n; ++i) {
        const bool regular = c.type[i] <= 1.0 && c.vol[i] > 0.0 && c.spot[i] >= 0.0 && c.expiry[i] > 0.0;
        premium[i] = regular ? BSVanilla(static_cast<int>(c.type[i]), c.strike[i], c.vol[i], c.expiry[i],
                                         c.delivery[i], c.rd[i], c.rf[i], c.spot[i]).Price()
                             : 1.0;
    }
    premium[5] = std::nan("");
    ImpliedVolatilityBook(c.Inputs(), premium, vols);
    for (std::size_t i = 0; i < n; ++i) {
        double expected;
        try {
            expected = c.type[i] > 1.0 ? std::nan("")
                                       : BSVanilla::VolImpliedFromPrice(static_cast<int>(c.type[i]), c.strike[i],
                                                                        c.expiry[i], c.delivery[i], c.rd[i],
                                                                        c.rf[i], c.spot[i], premium[i]);
        } catch (...) {
            expected = std::nan("");
        }
        if (std::isnan(expected)) {
            EXPECT_TRUE(std::isnan(vols[i])) << "row " << i;
        } else {
            EXPECT_NEAR(vols[i], expected, 1e-10) << "row " << i;
        }
    }
}

double EngineVolatility(const Columns& c, const std::vector<double>& premium, std::size_t i) {
    return BSVanilla::VolImpliedFromPrice(static_cast<int>(c.type[i]), c.strike[i], c.expiry[i], c.delivery[i],
                                          c.rd[i], c.rf[i], c.spot[i], premium[i]);
}

// Calls and puts from deep in to deep out of the money, one day to ten years, volatilities from
// 2% to beyond the bisection's first bracket end of 5; the premiums are the engine's own.
Columns WideBook(std::uint32_t seed, std::size_t rows) {
    std::mt19937 generator(seed);
    std::uniform_real_distribution<double> unit(0.0, 1.0);
    Columns c;
    for (std::size_t i = 0; i < rows; ++i) {
        const double spot = 20 + 180 * unit(generator);
        const double expiry = std::exp(std::log(1.0 / 365) + unit(generator) * std::log(3650.0));
        c.type.push_back(static_cast<double>(i % 2));
        c.strike.push_back(spot * std::exp(-0.7 + 1.4 * unit(generator)));
        c.vol.push_back(i % 50 == 7 ? 5.0 + 3.0 * unit(generator) : 0.02 + 1.5 * unit(generator));
        c.expiry.push_back(expiry);
        c.delivery.push_back(expiry + 0.01 * unit(generator));
        c.rd.push_back(-0.01 + 0.08 * unit(generator));
        c.rf.push_back(-0.01 + 0.08 * unit(generator));
        c.spot.push_back(spot);
    }
    return c;
}

class SeededBooks : public ::testing::TestWithParam<std::uint32_t> {};

TEST_P(SeededBooks, ImpliedVolatilitiesLandOnTheSingleOptionBisection) {
    const Columns c = WideBook(GetParam(), 2003);
    const std::size_t n = c.type.size();
    std::vector<double> premium(n), vols(n);
    for (std::size_t i = 0; i < n; ++i)
        premium[i] = BSVanilla(static_cast<int>(c.type[i]), c.strike[i], c.vol[i], c.expiry[i], c.delivery[i], c.rd[i],
                               c.rf[i], c.spot[i]).Price();
    ImpliedVolatilityBook(c.Inputs(), premium, vols);
    for (std::size_t i = 0; i < n; ++i) {
        const double expected = EngineVolatility(c, premium, i);
        EXPECT_NEAR(vols[i], expected, 1e-10) << "row " << i << " premium " << premium[i] << " vol " << c.vol[i] << " book " << vols[i] << " type " << c.type[i] << " strike/spot "
                                              << c.strike[i] / c.spot[i] << " expiry " << c.expiry[i];
    }
}

INSTANTIATE_TEST_SUITE_P(VanillaBook, SeededBooks, ::testing::Values(1u, 2u, 3u),
                         [](const ::testing::TestParamInfo<std::uint32_t>& info) {
                             return "Seed" + std::to_string(info.param);
                         });

// A premium below the discounted intrinsic value leaves the objective positive at the bracket's
// low end, so the bisection walks down from 5 and never moves: 5 exactly. One above the
// discounted forward (call) or strike (put) leaves it negative up to 20: the bisection walks up
// to within its last step of 20.
TEST(VanillaBook, PremiumsOutsideTheNoArbitrageBoundsFollowTheBisection) {
    Columns c = WideBook(11, 16);
    std::vector<double> premium(16), vols(16), expected(16);
    for (std::size_t i = 0; i < 16; ++i) {
        const double domesticDiscount = std::exp(-c.rd[i] * c.delivery[i]);
        const double forward = c.spot[i] * std::exp(-c.rf[i] * c.delivery[i]) / domesticDiscount;
        const double phi = c.type[i] == BSVanilla::Call ? 1.0 : -1.0;
        const double intrinsic = domesticDiscount * std::max(phi * (forward - c.strike[i]), 0.0);
        const double ceiling = domesticDiscount * (phi > 0 ? forward : c.strike[i]);
        const bool below = i % 4 < 2;
        premium[i] = below ? 0.9 * intrinsic - 0.01 : 1.1 * ceiling + 0.01;
        expected[i] = below ? 5.0 : 20.0;
    }
    ImpliedVolatilityBook(c.Inputs(), premium, vols);
    for (std::size_t i = 0; i < 16; ++i) {
        EXPECT_NEAR(vols[i], expected[i], 1e-10) << "row " << i;
        EXPECT_EQ(vols[i], EngineVolatility(c, premium, i)) << "row " << i;
    }
}

TEST(VanillaBook, RejectsColumnsOfDifferentLengths) {
    Columns c = SeededBook(8);
    c.rd.pop_back();
    std::vector<double> out(8);
    EXPECT_THROW(PriceVanillaBook(c.Inputs(), c.vol, out, out, out, out, out), std::invalid_argument);
}

}  // namespace
}  // namespace zep
