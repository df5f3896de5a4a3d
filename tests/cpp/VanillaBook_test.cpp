#include <gtest/gtest.h>

#include <cmath>
#include <random>
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
            // Where the premium hardly moves with the volatility, last-bit differences of erfc
            // move the root; both answers must still reprice the premium.
            const auto reprice = [&](double vol) {
                return BSVanilla(static_cast<int>(c.type[i]), c.strike[i], vol, c.expiry[i], c.delivery[i],
                                 c.rd[i], c.rf[i], c.spot[i]).Price();
            };
            EXPECT_NEAR(reprice(vols[i]), reprice(expected), 1e-9) << "row " << i;
            EXPECT_NEAR(vols[i], expected, 1e-5) << "row " << i;
        }
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
