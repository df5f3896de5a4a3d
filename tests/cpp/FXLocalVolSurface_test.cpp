#include <gtest/gtest.h>

#include "FailureText.hpp"

#include <cmath>
#include <vector>

#include <boost/make_shared.hpp>

#include "lum-fxo-market/FXLocalVolSurface.hpp"

namespace zep {
namespace {

const Date kReference(16, 11, 2026);

boost::shared_ptr<const YieldCurve> FlatCurve(double rate) {
    return boost::make_shared<YieldCurve>(kReference, std::vector<Date>{Date(16, 11, 2027)},
                                          std::vector<double>{rate}, Continuous, DayCounter(Act365Fixed));
}

boost::shared_ptr<const FXVolSurface> AtmOnly(const std::vector<double>& atm, int mode) {
    std::vector<std::vector<double>> quotes;
    for (double vol : atm) quotes.push_back({vol, 0.0, 0.0});
    return boost::make_shared<FXVolSurface>(kReference, kReference, 1.085,
                                            std::vector<Period>{Period("1M"), Period("6M"), Period("1Y")},
                                            std::vector<std::string>{"ATM", "25RR", "25BF"}, quotes,
                                            FlatCurve(0.043), FlatCurve(0.026), FXVolConventions{}, mode);
}

TEST(FXLocalVolSurface, FlatSurfaceHasItsImpliedVolatilityEverywhere) {
    const FXLocalVolSurface local(AtmOnly({0.08, 0.08, 0.08}, SmileCubicSpline));
    for (double t : {0.01, 0.3, 0.8, 2.0})
        for (double spot : {0.9, 1.085, 1.3}) EXPECT_NEAR(local.Volatility(t, spot), 0.08, 1e-7) << t << " " << spot;
}

TEST(FXLocalVolSurface, TermStructureGivesTheForwardVolatilityBetweenExpiries) {
    // No smile: sigma_loc^2 = dw/dt, constant between expiries, (w2 - w1) / (t2 - t1).
    const auto surface = AtmOnly({0.07, 0.08, 0.09}, SmileLinear);
    const FXLocalVolSurface local(surface);
    const auto times = surface->ExpiryTimes();
    const double forwardVariance =
        (0.09 * 0.09 * times[2] - 0.08 * 0.08 * times[1]) / (times[2] - times[1]);
    for (double spot : {1.0, 1.085, 1.2})
        EXPECT_NEAR(local.Volatility(0.5 * (times[1] + times[2]), spot), std::sqrt(forwardVariance), 1e-7);
}

TEST(FXLocalVolSurface, ASkewFallsThroughTheForwardAndBadInputIsRefused) {
    const std::vector<std::vector<double>> quotes{{0.075, -0.010, 0.0}, {0.08, -0.012, 0.0}};
    const auto surface = boost::make_shared<FXVolSurface>(kReference, kReference, 1.085,
                                                          std::vector<Period>{Period("3M"), Period("1Y")},
                                                          std::vector<std::string>{"ATM", "25RR", "25BF"}, quotes,
                                                          FlatCurve(0.043), FlatCurve(0.026), FXVolConventions{},
                                                          SmileSVI);
    const FXLocalVolSurface local(surface);
    const double forward = surface->Forward(0.5);
    // A pure put skew (negative risk reversal, no butterfly): local volatility falls through
    // the forward, as the implied one does.
    EXPECT_GT(local.Volatility(0.5, 0.97 * forward), local.Volatility(0.5, forward));
    EXPECT_GT(local.Volatility(0.5, forward), local.Volatility(0.5, 1.02 * forward));
    EXPECT_EQ(testing::FailureText([&] { local.Volatility(0.5, 0.0); }).rfind("Spot must be positive", 0), 0u);
    EXPECT_EQ(testing::FailureText([] { FXLocalVolSurface(nullptr); }), "FXVolSurface is Null!");
}

}  // namespace
}  // namespace zep
