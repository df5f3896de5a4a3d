#include <gtest/gtest.h>

#include "FailureText.hpp"

#include <cmath>
#include <string>
#include <vector>

#include <boost/make_shared.hpp>

#include "lum-closed-form/NormalDistribution.hpp"
#include "lum-fxo-market/FXVolSurface2.hpp"
#include "lum-fxo-market/VolSurface2.hpp"

namespace zep {
namespace {

using testing::FailureText;

const Date kReference(16, 11, 2026);
const std::vector<std::string> kLabels{"ATM", "25RR", "25BF"};
const std::vector<Period> kTenors{Period("1M"), Period("6M")};

boost::shared_ptr<const YieldCurve> FlatCurve(double rate) {
    return boost::make_shared<YieldCurve>(kReference, std::vector<Date>{Date(16, 11, 2027)},
                                          std::vector<double>{rate}, Continuous, DayCounter(Act365Fixed));
}

boost::shared_ptr<const FXVolSurface> Side(double atmShift, const Date& reference = kReference) {
    const std::vector<std::vector<double>> quotes{{0.075 + atmShift, -0.003, 0.002}, {0.080 + atmShift, -0.004, 0.0025}};
    return boost::make_shared<FXVolSurface>(reference, reference, 1.085, kTenors, kLabels, quotes,
                                            FlatCurve(0.043), FlatCurve(0.026), FXVolConventions{}, SmileCubicSpline);
}

TEST(FXVolSurface2, MidIsTheAverageOfBidAndAsk) {
    const FXVolSurface2 twoWay(Side(-0.001), Side(0.001));
    for (double t : {0.05, 0.3, 1.0})
        for (double strike : {1.0, 1.08, 1.2}) {
            const double bid = twoWay.GetVolatility(Bid, t, strike), ask = twoWay.GetVolatility(Ask, t, strike);
            EXPECT_LT(bid, ask);
            EXPECT_DOUBLE_EQ(twoWay.GetVolatility(Mid, t, strike), 0.5 * (bid + ask));
            EXPECT_DOUBLE_EQ(twoWay.GetSpread(t, strike), ask - bid);
        }
    EXPECT_NEAR(twoWay.GetATMVol(Mid, kReference + Period("6M")), 0.080, 1e-15);
}

TEST(FXVolSurface2, ParallelSpreadIsOneAtEveryPillar) {
    const FXVolSurface2 twoWay(Side(-0.001), Side(0.001));
    for (double relative : twoWay.RelativePillarSpreads(1)) EXPECT_NEAR(relative, 1.0, 1e-12);
}

TEST(FXVolSurface2, RefusesMismatchedSidesAndUnknownSides) {
    const FXVolSurface2 twoWay(Side(-0.001), Side(0.001));
    EXPECT_EQ(FailureText([&] { twoWay.GetVolatility(3, 0.5, 1.1); }), "BidMidAsk error!");
    EXPECT_EQ(FailureText([&] { FXVolSurface2(Side(0.0), Side(0.0, kReference + 1)); }),
              "Reference Date of two surface not same!");
    const auto shorter = boost::make_shared<FXVolSurface>(kReference, kReference, 1.085, std::vector<Period>{Period("1M")},
                                                          kLabels, std::vector<std::vector<double>>{{0.075, -0.003, 0.002}},
                                                          FlatCurve(0.043), FlatCurve(0.026));
    EXPECT_EQ(FailureText([&] { FXVolSurface2(Side(0.0), shorter); }), "BID/ASK vols size should be same!");
    const auto noAtm = [](double shift) {
        return FXVolSurface::FromPillars(kReference, kReference, 1.085, {kReference + Period("1M")}, {"25P", "25C"},
                                         {{0.08 + shift, 0.075 + shift}}, FlatCurve(0.043), FlatCurve(0.026));
    };
    EXPECT_EQ(FailureText([&] { FXVolSurface2(noAtm(0.0), noAtm(0.001)).RelativePillarSpreads(0); }),
              "ATM delta not found in FXVolSurface2 spread interps");
}

// ---- strike-quoted surface ----------------------------------------------------------------------

// Undiscounted Black premium, written out here as the reference the surface must invert.
double BlackForwardPremium(int type, double strike, double forward, double vol, double t) {
    const double phi = type == 0 ? 1.0 : -1.0, sd = vol * std::sqrt(t);
    const double d1 = (std::log(forward / strike) + 0.5 * sd * sd) / sd;
    return phi * (forward * NormalCdf(phi * d1) - strike * NormalCdf(phi * (d1 - sd)));
}

TEST(VolSurface2, PremiumsGiveBackTheVolatilitiesTheyWereMadeWith) {
    const std::vector<Date> expiries{kReference + Period("3M"), kReference + Period("1Y")};
    const auto forwards = boost::make_shared<ForwardCurve2>(kReference, 1.085, expiries, std::vector<double>{0.017, 0.016});
    const std::vector<std::vector<double>> strikes{{1.05, 1.09, 1.12}, {1.0, 1.1, 1.2}};
    const std::vector<std::vector<double>> vols{{0.082, 0.078, 0.079}, {0.088, 0.081, 0.083}};
    const std::vector<std::vector<int>> types{{1, 0, 0}, {1, 1, 0}};
    constexpr double rate = 0.04;
    std::vector<std::vector<double>> premiums = vols;
    for (std::size_t i = 0; i < 2; ++i) {
        const double t = (expiries[i].SerialNumber() - kReference.SerialNumber()) / 365.0;
        const double forward = 1.085 * std::exp((i == 0 ? 0.017 : 0.016) * t);
        EXPECT_NEAR(forwards->Forward(t), forward, 1e-15);
        for (std::size_t k = 0; k < 3; ++k)
            premiums[i][k] = std::exp(-rate * t) * BlackForwardPremium(types[i][k], strikes[i][k], forward, vols[i][k], t);
    }
    const VolSurface2 fromPremiums(expiries, types, strikes, premiums, VolSurface2::Premiums, forwards, rate);
    const VolSurface2 fromVols(expiries, types, strikes, vols, VolSurface2::ImpliedVolatilities, forwards);
    for (std::size_t i = 0; i < 2; ++i)
        for (std::size_t k = 0; k < 3; ++k) {
            EXPECT_NEAR(fromPremiums.GetVolatility(expiries[i], strikes[i][k]), vols[i][k], 1e-9);
            EXPECT_DOUBLE_EQ(fromVols.GetVolatility(expiries[i], strikes[i][k]), vols[i][k]);
        }
    // Halfway in strike between two quotes the smile is linear.
    EXPECT_DOUBLE_EQ(fromVols.GetVolatility(expiries[1], 1.15), 0.082);
}

TEST(VolSurface2, RefusesInconsistentInputWithItsMessages) {
    const std::vector<Date> one{kReference + Period("3M")};
    const auto forwards = boost::make_shared<ForwardCurve2>(kReference, 1.085, one, std::vector<double>{0.017});
    const std::vector<std::vector<double>> strikes{{1.0, 1.1}}, vols{{0.08, 0.08}};
    const std::vector<std::vector<int>> types{{0, 0}};
    EXPECT_EQ(FailureText([&] { VolSurface2(one, {}, strikes, vols, 0, forwards); }),
              "Expiry Dates size not same with OptionTypes!");
    EXPECT_EQ(FailureText([&] { VolSurface2(one, types, {}, vols, 0, forwards); }),
              "Expiry Dates size not same with Strikes!");
    EXPECT_EQ(FailureText([&] { VolSurface2(one, types, strikes, {{0.08}}, 0, forwards); }),
              "Strikes/Volatilities not same size!");
    EXPECT_EQ(FailureText([&] { VolSurface2(one, types, strikes, vols, 0, forwards, 0.0, 1); }),
              "support strike interp only!");
    EXPECT_EQ(FailureText([&] { ForwardCurve2(kReference, 1.0, {}, {}); }), "no input expiry and underlying rates");
    EXPECT_EQ(FailureText([&] { ForwardCurve2(kReference, 1.0, one, {0.01, 0.02}); }),
              "expiry dates size not same with unerlying rates!");
    EXPECT_EQ(FailureText([&] { ForwardCurve2(kReference, 1.0, {kReference}, {0.01}); }),
              "reference date must before expiry dates!");
}

}  // namespace
}  // namespace zep
