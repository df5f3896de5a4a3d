// Curves at the edges of their domain: zero rates of -50% over 50 years, pillars a day away.
// Pillars that read back no discount factor are refused when the curve is built; a query where
// the curve's own rule gives none raises instead of returning a negative, infinite or NaN figure.
#include <gtest/gtest.h>

#include <cmath>
#include <string>
#include <vector>

#include "FailureText.hpp"
#include "lum-interest-rates/YieldCurve.hpp"

namespace {

using zep::Date;
using zep::YieldCurve;

const Date kReference(2, 1, 2024);
const zep::DayCounter kAct365(zep::Act365Fixed);

bool StartsWith(const std::string& text, const std::string& prefix) { return text.rfind(prefix, 0) == 0; }

// One pillar a day away whose discount factor exp(-rate / 365) is stored as `variable`.
YieldCurve OneDayCurve(double rate, std::int32_t variable, std::int32_t method) {
    return YieldCurve(kReference, {kReference + 1}, {std::exp(-rate / 365.0)}, kAct365, variable, method);
}

TEST(YieldCurveExtremes, SimpleRateWhoseGrowthIsNotPositiveIsRefused) {
    // 1 + r t = 1 - 0.5 * 3.0027 < 0: no money grows that way.
    const std::string refused = zep::testing::ErrorMessage([] {
        YieldCurve(kReference, {kReference + 1096}, {-0.5}, zep::NoFrequency, kAct365);
    });
    EXPECT_EQ(refused, "YieldCurve: the simple zero rate -0.5 over 3.00274 years gives no discount factor "
                       "(1 + r t is not positive)");
}

TEST(YieldCurveExtremes, LogInterpolationOfRatesThatAreNotPositiveIsRefused) {
    for (std::int32_t method : {zep::LogLinearInterpolation, zep::FFQInterpolation}) {
        const std::string refused = zep::testing::ErrorMessage([&] {
            YieldCurve(kReference, {kReference + 365, kReference + 730}, {-0.5, -0.4}, zep::Continuous, kAct365,
                       zep::ContinuousZeroRates, method);
        });
        EXPECT_TRUE(StartsWith(refused, "YieldCurve: ")) << refused;
        EXPECT_NE(refused.find("interpolation needs positive pillar values, not -0.5"), std::string::npos) << refused;
    }
}

TEST(YieldCurveExtremes, PillarThatReadsBackNoDiscountFactorIsRefused) {
    // The stored annual rate (1/DF)^t - 1 of DF = exp(0.5 * 8.65) rounds to -100%.
    const std::string refused = zep::testing::ErrorMessage([] {
        YieldCurve(kReference, {kReference + 3159}, {std::exp(0.5 * 3159 / 365.0)}, kAct365, zep::AnnualZeroRates);
    });
    EXPECT_TRUE(StartsWith(refused, "YieldCurve: the pillar at 26/08/2032 reads back no discount factor")) << refused;
}

TEST(YieldCurveExtremes, QueryWhereTheCurvesRuleGivesNoDiscountFactorRaises) {
    // A simple rate of about -50% held flat: 1 / (1 + r t) is 2 at one year, negative at fifty.
    const YieldCurve curve = OneDayCurve(-0.5, zep::SimpleZeroRates, zep::LinearInterpolation);
    EXPECT_NEAR(curve.DiscountFactor(1.0), 1.0 / (1.0 - 0.49966), 1e-3);
    const std::string refused = zep::testing::ErrorMessage([&] { curve.DiscountFactor(50.0); });
    EXPECT_TRUE(StartsWith(refused, "YieldCurve: no discount factor at 50 years: the curve reads -0.49")) << refused;
    const double times[] = {1.0, 50.0};
    double factors[2];
    EXPECT_EQ(zep::testing::ErrorMessage([&] { curve.DiscountFactorArray(times, factors, 2); }), refused);
    EXPECT_EQ(zep::testing::ErrorMessage([&] { curve.ZeroRate(50.0, true, zep::Continuous); }), refused);
}

TEST(YieldCurveExtremes, RateBeyondDoublePrecisionRaises) {
    // Under the closest-pillar rule the discount factor 1e-10 years out is the one-day pillar's
    // exp(-0.5 / 365): compounded annually over 1e-10 years that is a rate of e^(1.4e7).
    const YieldCurve curve = OneDayCurve(0.5, zep::DiscountFactors, zep::ClosestInterpolation);
    EXPECT_DOUBLE_EQ(curve.DiscountFactor(1e-10), std::exp(-0.5 / 365.0));
    EXPECT_EQ(zep::testing::ErrorMessage([&] { curve.ZeroRate(1e-10, true, zep::Annual); }),
              "YieldCurve: the ZeroRate at 1e-10 years cannot be represented in double precision (inf)");
}

}  // namespace
