#include "lum-interest-rates/HullWhite.hpp"

#include <gtest/gtest.h>

#include <algorithm>
#include <boost/make_shared.hpp>
#include <cmath>
#include <string>

#include "FailureText.hpp"
#include "lum-interest-rates/BermudanSwaption.hpp"
#include "lum-interest-rates/CallableBond.hpp"
#include "lum-interest-rates/HullWhiteCalibration.hpp"
#include "lum-interest-rates/HullWhiteTree.hpp"

namespace zep {
namespace {

Date D(const char* text) { return Date(std::string(text)); }

boost::shared_ptr<const YieldCurve> SlopedCurve() {
    std::vector<Date> dates{D("2024-01-15"), D("2025-01-15"), D("2027-01-15"), D("2034-01-15"), D("2044-01-15")};
    return boost::make_shared<YieldCurve>(D("2024-01-15"), dates,
                                          std::vector<double>{0.030, 0.031, 0.029, 0.033, 0.035}, Continuous,
                                          DayCounter(Act365Fixed));
}

// Annual periods from `start` to `start + years`, accruing one year each.
HullWhiteSwap AnnualSwap(double start, int years, double strike, bool isPayer) {
    HullWhiteSwap swap;
    for (int i = 0; i < years; ++i) {
        swap.starts.push_back(start + i);
        swap.payments.push_back(start + i + 1);
        swap.accruals.push_back(1.0);
    }
    swap.strike = strike;
    swap.notional = 100.0;
    swap.isPayer = isPayer;
    return swap;
}

double ForwardSwapValue(const YieldCurve& curve, const HullWhiteSwap& swap, std::size_t first) {
    double value = swap.notional * curve.DiscountFactor(swap.starts[first]);
    for (std::size_t i = first; i < swap.starts.size(); ++i)
        value -= swap.FixedAmount(i) * curve.DiscountFactor(swap.payments[i]);
    return swap.isPayer ? value : -value;
}

class HullWhiteParameters : public ::testing::TestWithParam<std::pair<double, double>> {
protected:
    HullWhite Model() const { return HullWhite(SlopedCurve(), GetParam().first, GetParam().second); }
};

TEST_P(HullWhiteParameters, BondAtTodaysStateAveragesToTheForwardBond) {
    // E^t[P(t, T)] over x ~ N(-sigma^2 B(0,t)^2 / 2, V(t)) is P(0,T) / P(0,t): Gauss-Hermite-free check
    // by a fine midpoint sum over the normal density.
    const HullWhite model = Model();
    const double t = 3.0, T = 8.0, sd = std::sqrt(model.FactorVariance(t));
    const double mean = -0.5 * std::pow(model.Sigma() * model.B(0.0, t), 2);
    double sum = 0.0;
    const int n = 20000;
    for (int i = 0; i < n; ++i) {
        const double z = -8.0 + 16.0 * (i + 0.5) / n;
        sum += std::exp(-0.5 * z * z) / std::sqrt(2.0 * M_PI) * (16.0 / n) * model.DiscountBond(t, T, mean + sd * z);
    }
    EXPECT_NEAR(sum, model.Curve().DiscountFactor(T) / model.Curve().DiscountFactor(t), 1e-12);
}

TEST_P(HullWhiteParameters, BondCallMinusPutIsTheForward) {
    const HullWhite model = Model();
    for (double strike : {0.8, 0.9, 1.0}) {
        const double parity =
            model.DiscountBondOption(true, strike, 2.0, 7.0) - model.DiscountBondOption(false, strike, 2.0, 7.0);
        EXPECT_NEAR(parity, model.Curve().DiscountFactor(7.0) - strike * model.Curve().DiscountFactor(2.0), 1e-14)
            << "strike " << strike;
    }
}

TEST_P(HullWhiteParameters, PayerMinusReceiverIsTheForwardSwap) {
    const HullWhite model = Model();
    for (double strike : {0.01, 0.03, 0.06}) {
        const HullWhiteSwap payer = AnnualSwap(2.0, 5, strike, true), receiver = AnnualSwap(2.0, 5, strike, false);
        EXPECT_NEAR(JamshidianSwaption(model, payer, 2.0) - JamshidianSwaption(model, receiver, 2.0),
                    ForwardSwapValue(model.Curve(), payer, 0), 1e-12)
            << "strike " << strike;
    }
}

TEST_P(HullWhiteParameters, TreeRepricesEveryDiscountFactor) {
    const HullWhite model = Model();
    const HullWhiteTree tree(model, {1.0, 2.5, 10.0}, 150);
    for (std::size_t level = 0; level <= tree.LastLevel(); ++level) {
        double sum = 0.0;
        for (std::size_t node = 0; node < tree.NodeCount(level); ++node) sum += tree.StatePrice(level, node);
        ASSERT_NEAR(sum, model.Curve().DiscountFactor(tree.Time(level)), 1e-10) << "level " << level;
    }
}

TEST_P(HullWhiteParameters, OneExerciseDateIsTheEuropeanWithinTreeError) {
    const HullWhite model = Model();
    for (bool isPayer : {true, false}) {
        const HullWhiteSwap swap = AnnualSwap(3.0, 5, 0.032, isPayer);
        const double european = JamshidianSwaption(model, swap, 3.0);
        EXPECT_NEAR(BermudanSwaption(model, swap, {3.0}, 400).PV(), european, 3e-3 * european)
            << (isPayer ? "payer" : "receiver");
    }
}

TEST_P(HullWhiteParameters, BermudanIsWorthAtLeastEachEuropean) {
    const HullWhite model = Model();
    const HullWhiteSwap swap = AnnualSwap(1.0, 10, 0.031, false);
    const BermudanSwaption bermudan(model, swap, {1.0, 2.0, 3.0, 4.0, 5.0, 6.0, 7.0, 8.0, 9.0, 10.0}, 200);
    const std::vector<double> europeans = bermudan.EuropeanPVs();
    EXPECT_GT(bermudan.PV(), *std::max_element(europeans.begin(), europeans.end()));
}

// A 10-year 4% bond issued half a year ago, face 100, callable at par on each coupon date from year 3.
CallableBond TenYearCallable(const HullWhite& model, std::vector<double> callTimes) {
    HullWhiteSwap coupons = AnnualSwap(-0.5, 10, 0.04, true);
    const std::vector<double> prices(callTimes.size(), 100.0);
    return CallableBond(model, coupons, std::move(callTimes), prices, 300);
}

TEST_P(HullWhiteParameters, BondWithoutCallsIsItsFlowsDiscountedAtCurvePlusSpread) {
    const HullWhite model = Model();
    const CallableBond bond = TenYearCallable(model, {});
    for (double spread : {0.0, 0.012, -0.004}) {
        double expected = -bond.AccruedAt(0.0);
        for (int i = 0; i < 10; ++i)
            expected += (4.0 + (i == 9 ? 100.0 : 0.0)) * model.Curve().DiscountFactor(0.5 + i) *
                        std::exp(-spread * (0.5 + i));
        EXPECT_NEAR(bond.CleanPrice(spread), expected, 1e-10) << "spread " << spread;
    }
    EXPECT_NEAR(bond.AccruedAt(0.0), 2.0, 1e-14);
}

TEST_P(HullWhiteParameters, CallableIsWorthAtMostItsStraightTwinAndItsOASRoundTrips) {
    const CallableBond bond = TenYearCallable(Model(), {2.5, 3.5, 4.5, 5.5, 6.5, 7.5, 8.5});
    for (double spread : {0.0, 0.01}) {
        EXPECT_LT(bond.CleanPrice(spread), bond.StraightCleanPrice(spread)) << "spread " << spread;
        EXPECT_NEAR(bond.OAS(bond.CleanPrice(spread)), spread, 1e-10) << "spread " << spread;
    }
}

INSTANTIATE_TEST_SUITE_P(MeanReversionAndVolatility, HullWhiteParameters,
                         ::testing::Values(std::pair{0.03, 0.01}, std::pair{0.1, 0.006}, std::pair{0.0, 0.008},
                                           std::pair{0.6, 0.012}));

TEST(HullWhite, CalibrationRecoversTheVolatilityThatPricedItsQuotes) {
    const auto curve = SlopedCurve();
    const HullWhite truth(curve, 0.05, 0.009);
    std::vector<HullWhiteSwaptionQuote> quotes;
    for (double expiry : {1.0, 2.0, 5.0}) {
        HullWhiteSwaptionQuote quote = AtTheMoneyQuote(*curve, AnnualSwap(expiry, 5, 0.0, true), expiry,
                                                       {RateVolatilityModel::Bachelier, 0.008, 0.0});
        quote.price = JamshidianSwaption(truth, quote.swap, expiry);
        quotes.push_back(quote);
    }
    const HullWhiteFit fit = CalibrateHullWhite(curve, quotes, 0.2, 0.02, true);
    EXPECT_NEAR(fit.model.Sigma(), 0.009, 1e-7);
    EXPECT_NEAR(fit.model.MeanReversion(), 0.05, 1e-5);
    EXPECT_LT(fit.rootMeanSquareError, 1e-9);
}

TEST(HullWhite, RefusesParametersAndSwapsItCannotPrice) {
    const auto curve = SlopedCurve();
    const HullWhite model(curve, 0.05, 0.01);
    const std::vector<std::pair<std::string, std::string>> refusals{
        {testing::ErrorMessage([&] { HullWhite(curve, 0.05, -0.01); }),
         "the volatility -0.010000 must be finite and > 0"},
        {testing::ErrorMessage([&] { HullWhite(curve, -0.1, 0.01); }),
         "the mean reversion -0.100000 must be finite and >= 0"},
        {testing::ErrorMessage([&] { JamshidianSwaption(model, AnnualSwap(2.0, 5, -0.01, true), 2.0); }),
         "Jamshidian's decomposition needs a strike >= 0"},
        {testing::ErrorMessage([&] { TenYearCallable(model, {9.5}); }),
         "call date 0 is on or after the bond's maturity"},
        {testing::ErrorMessage([&] { TenYearCallable(model, {3.5}).OAS(1e7); }), "OAS: no spread in [-100%, 100%]"},
        {testing::ErrorMessage([&] { BermudanSwaption(model, AnnualSwap(2.0, 5, 0.03, true), {8.0}); }),
         "no fixed period starts on or after the exercise time 8"},
    };
    for (const auto& [message, expected] : refusals)
        EXPECT_NE(message.find(expected), std::string::npos) << message;
}

}  // namespace
}  // namespace zep
