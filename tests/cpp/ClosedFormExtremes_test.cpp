// The engine, the booked option and the book at the edges of the double range: spots of 1e+-300,
// volatilities of 1e-8, expiries of 1e-10 years, rates of +-50% over 50 years.
#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <string>
#include <vector>

#include "FailureText.hpp"
#include "lum-closed-form/BSVanilla.hpp"
#include "lum-closed-form/VanillaBook.hpp"
#include "lum-closed-form/VanillaOption.hpp"

namespace zep {
namespace {

bool StartsWith(const std::string& text, const std::string& prefix) { return text.rfind(prefix, 0) == 0; }

TEST(ClosedFormExtremes, PutFarOutOfTheMoneyOnAHugeSpotIsWorthNothing) {
    // S DFf = 1e300 e^25 overflows, but the forward S DFf / DFd is the spot itself and the put
    // struck at 1e-300 is worthless.
    BSVanilla put(BSVanilla::Put, 1e-300, 1e-8, 50, 50, -0.5, -0.5, 1e300);
    EXPECT_EQ(put.GetForward(), 1e300);
    EXPECT_EQ(put.Price(), 0.0);
    EXPECT_EQ(put.Rho(), 0.0);
    EXPECT_EQ(put.Vega(), 0.0);
}

TEST(ClosedFormExtremes, LogMoneynessBeyondTheRangeOfTheRatio) {
    // F / K = 1e600 is no double, ln F - ln K = 600 ln 10 is: d1 = (1381.551... + 0.02) / 0.2.
    const BSVanilla call(BSVanilla::Call, 1e-300, 0.2, 1, 1, 0, 0, 1e300);
    EXPECT_NEAR(call.GetD1(), 6907.855278982138, 1e-9);
    EXPECT_NEAR(call.GetD2(), 6907.655278982138, 1e-9);
}

TEST(ClosedFormExtremes, GreeksOfAVanishedDensityAreZero) {
    // d1 is about 1e16: the density is zero and so is every Greek built on it, where d1 or 1/F
    // times the density used to give inf * 0.
    BSVanilla call(BSVanilla::Call, 1e-300, 1e-8, 1e-10, 1e-10, -0.5, -0.5, 1e300);
    for (auto figure : {&BSVanilla::Gamma, &BSVanilla::Vega, &BSVanilla::Vanna, &BSVanilla::Volga,
                        &BSVanilla::DvegaDvol2, &BSVanilla::DvegaDspot, &BSVanilla::VegaDigital,
                        &BSVanilla::VegaIDDigital})
        EXPECT_EQ((call.*figure)(), 0.0);
}

TEST(ClosedFormExtremes, AFigureBeyondDoublePrecisionRaisesNamingItself) {
    // At the money on a spot of 1e-300 with sigma sqrt T = 1e-13 the gamma is n(0) / 1e-313.
    BSVanilla call(BSVanilla::Call, 1e-300, 1e-8, 1e-10, 1e-10, 0, 0, 1e-300);
    EXPECT_TRUE(std::isfinite(call.Price()));
    const std::string gamma = testing::ErrorWhat([&] { call.Gamma(); });
    EXPECT_TRUE(StartsWith(gamma, "Gamma cannot be represented in double precision for a call struck at 1e-300 on "
                                  "spot 1e-300")) << gamma;
    EXPECT_NE(gamma.find("(zep::BSVanilla::Gamma: "), std::string::npos) << gamma;
    // Worth 1e300 e^25 in domestic money: no double holds it.
    BSVanilla deep(BSVanilla::Call, 1e-300, 1e-8, 50, 50, -0.5, -0.5, 1e300);
    EXPECT_TRUE(StartsWith(testing::ErrorMessage([&] { deep.Price(); }), "Price cannot be represented"));
}

TEST(ClosedFormExtremes, RefusesAForwardBeyondDoublePrecision) {
    EXPECT_EQ(testing::ErrorMessage([] { BSVanilla(BSVanilla::Call, 1.0, 0.2, 50, 50, 0.5, -0.5, 1e300); }),
              "the forward S exp((rd - rf) Td) cannot be represented in double precision");
    EXPECT_EQ(testing::ErrorMessage([] { BSVanilla::VolImpliedFromPrice(0, 1.0, 50, 50, 0.5, -0.5, 1e300, 1.0); }),
              "the forward S exp((rd - rf) Td) cannot be represented in double precision");
}

TEST(ClosedFormExtremes, RefusesInputsThatAreNoMarket) {
    const double inf = std::numeric_limits<double>::infinity(), nan = std::nan("");
    for (double strike : {0.0, -1.0, nan, inf})
        EXPECT_EQ(testing::ErrorMessage([&] { BSVanilla(0, strike, 0.2, 1, 1, 0, 0, 100); }),
                  "strike must be a positive number") << strike;
    for (double rate : {nan, inf, -inf})
        EXPECT_EQ(testing::ErrorMessage([&] { BSVanilla(0, 100, 0.2, 1, 1, rate, 0, 100); }),
                  "rates must be finite numbers") << rate;
    EXPECT_EQ(testing::ErrorMessage([&] { BSVanilla(0, 100, 0.2, inf, inf, 0, 0, 100); }),
              "times to expiry and delivery must be finite numbers");
    EXPECT_EQ(testing::ErrorMessage([&] { BSVanilla(0, 100, 0.2, 1, 1, 0, 0, inf); }), "spot must be a finite number");
    EXPECT_EQ(testing::ErrorMessage([&] { BSVanilla(0, 100, inf, 1, 1, 0, 0, 100); }),
              "volatility must be a positive percentage!");
}

TEST(ClosedFormExtremes, BookedFigureBeyondDoublePrecisionRaisesNamingItself) {
    VanillaOption::Terms terms;
    terms.faceValue = 1e300;
    terms.strike = 1.0;
    terms.referenceDate = Date(2, 1, 2024);
    terms.expiryDate = terms.settlementDate = terms.deliveryDate = Date(2, 1, 2025);
    VanillaOption option(terms, 1e300, VanillaOption::Carry::Rates(0.0, 0.0),
                         boost::shared_ptr<const VolatilitySource>(new FlatVolatility(0.2)));
    EXPECT_TRUE(std::isfinite(option.Price()));
    EXPECT_TRUE(StartsWith(testing::ErrorMessage([&] { option.PV(); }),
                           "PV cannot be represented in double precision for a bought call on 1e+300 units"));
}

struct Row {
    double type, strike, vol, expiry, delivery, rd, rf, spot;
};

// Three ordinary rows and one at an edge: the four go through the book's vector lanes together.
std::vector<Row> GroupWith(const Row& edge) {
    return {{0, 100, 0.2, 1, 1, 0.03, 0.01, 100}, {1, 90, 0.3, 2, 2, 0.01, 0.0, 100},
            {0, 120, 0.25, 0.5, 0.5, 0.0, 0.02, 100}, edge};
}

VanillaBookInputs Columns(const std::vector<Row>& rows, std::vector<std::vector<double>>& storage) {
    storage.assign(8, {});
    for (const Row& r : rows) {
        const double fields[] = {r.type, r.strike, r.vol, r.expiry, r.delivery, r.rd, r.rf, r.spot};
        for (int k = 0; k < 8; ++k) storage[k].push_back(fields[k]);
    }
    return {storage[0], storage[1], storage[3], storage[4], storage[5], storage[6], storage[7]};
}

// Below the normal range (1e-308) the vector exp gave 0 where the scalar one keeps a density of
// 1e-311 (a vega of 1e-165 on a forward of 1e134), and a forward of 1e-322 kept two digits (a
// gamma 0.1% off): such rows now take the engine's path, figure for figure.
TEST(ClosedFormExtremes, BookRowsFarInATailAreTheEngineFigures) {
    for (const Row& edge : {Row{0, 1e-175, 5.0, 50, 50, -0.5, -0.5, 1e134}, Row{0, 1e-300, 5.0, 50, 50, -0.5, 0.5, 1e-300}}) {
        std::vector<std::vector<double>> storage;
        const std::vector<Row> rows = GroupWith(edge);
        const VanillaBookInputs book = Columns(rows, storage);
        std::vector<double> price(4), delta(4), gamma(4), vega(4), theta(4);
        PriceVanillaBook(book, storage[2], price, delta, gamma, vega, theta);
        BSVanilla engine(0, edge.strike, edge.vol, edge.expiry, edge.delivery, edge.rd, edge.rf, edge.spot);
        EXPECT_EQ(vega[3], engine.Vega()) << edge.spot;
        EXPECT_EQ(gamma[3], engine.Gamma()) << edge.spot;
    }
}

TEST(ClosedFormExtremes, ImpliedVolatilityBookRowsBelowTheNormalRangeAreTheSingleSolvers) {
    const Row edge{0, 1e-300, 5.0, 50, 50, -0.5, 0.0, 1e-300};
    std::vector<Row> rows = GroupWith(edge);
    rows.insert(rows.end(), rows.begin(), rows.end());  // eight rows: one group of lanes
    std::vector<std::vector<double>> storage;
    const VanillaBookInputs book = Columns(rows, storage);
    std::vector<double> premiums, vols(rows.size());
    for (const Row& r : rows)
        premiums.push_back(BSVanilla(static_cast<int>(r.type), r.strike, r.vol, r.expiry, r.delivery, r.rd, r.rf, r.spot).Price());
    ImpliedVolatilityBook(book, premiums, vols);
    for (std::size_t i : {3u, 7u})
        EXPECT_EQ(vols[i], BSVanilla::VolImpliedFromPrice(0, edge.strike, edge.expiry, edge.delivery, edge.rd, edge.rf,
                                                          edge.spot, premiums[i])) << i;
}

}  // namespace
}  // namespace zep
