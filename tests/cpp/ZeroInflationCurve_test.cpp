#include "lum-interest-rates/ZeroInflationCurve.hpp"

#include <gtest/gtest.h>

#include <cmath>
#include <string>

#include "FailureText.hpp"

namespace zep {
namespace {

// Monthly levels from January 2023 to January 2024, 1 + month / 100 apart.
FixingStore Fixings() {
    FixingStore fixings;
    for (int k = 0; k <= 12; ++k) fixings.Add("CPI", Date(1, 1 + k % 12, 2023 + k / 12), 100.0 + k);
    fixings.Add("RPI", Date(1, 1, 2023), 300.0);
    return fixings;
}

InflationIndexConventions Conventions(Period lag, InflationInterpolation interpolation) {
    InflationIndexConventions conventions;
    conventions.index = "CPI";
    conventions.observationLag = lag;
    conventions.interpolation = interpolation;
    return conventions;
}

TEST(FixingStore, ListsOneIndexByDate) {
    const auto cpi = Fixings().FixingsOf("CPI");
    ASSERT_EQ(cpi.size(), 13u);
    EXPECT_EQ(cpi.front().first, Date(1, 1, 2023));
    EXPECT_EQ(cpi.back().second, 112.0);
    EXPECT_TRUE(Fixings().FixingsOf("HICP").empty());
}

// A lag in days moves the date itself: 2024-03-20 less 80 days is 2023-12-31, a December day.
TEST(ZeroInflationCurve, LagInDaysObservesTheMonthOfTheMovedDate) {
    const ZeroInflationCurve days(Date(20, 3, 2024), Conventions(Period(80, Days), InflationInterpolation::Flat),
                                  {Period("1Y")}, {0.02}, Fixings());
    EXPECT_EQ(days.ReferenceIndex(Date(20, 3, 2024)), 111.0);
    const ZeroInflationCurve linear(Date(20, 3, 2024), Conventions(Period(80, Days), InflationInterpolation::Linear),
                                    {Period("1Y")}, {0.02}, Fixings());
    EXPECT_DOUBLE_EQ(linear.ReferenceIndex(Date(20, 3, 2024)), 111.0 + 19.0 / 31.0);
}

TEST(ZeroInflationCurve, LagInYearsIsTwelveMonths) {
    const ZeroInflationCurve curve(Date(1, 1, 2024), Conventions(Period(1, Years), InflationInterpolation::Linear),
                                   {Period("2Y")}, {0.02}, Fixings());
    EXPECT_EQ(curve.ReferenceIndex(Date(1, 1, 2024)), 100.0);
    EXPECT_EQ(curve.ReferenceIndex(Date(1, 6, 2024)), 105.0);
    EXPECT_NEAR(curve.ZeroCouponRate(Date(1, 1, 2024), Date(1, 1, 2026)), 0.02, 1e-13);
}

TEST(ZeroInflationCurve, ForecastIsLogLinearInMonthsBetweenPillars) {
    const ZeroInflationCurve curve(Date(1, 4, 2024), Conventions(Period(3, Months), InflationInterpolation::Flat),
                                   {Period("1Y"), Period("3Y")}, {0.02, 0.03}, Fixings());
    // January 2025 = 112 * 1.02, January 2027 = 112 * 1.03^3; January 2026 their geometric mean.
    EXPECT_NEAR(curve.MonthlyIndex(Date(1, 1, 2026)), std::sqrt(112.0 * 1.02 * 112.0 * std::pow(1.03, 3)), 1e-11);
}

TEST(ZeroInflationCurve, RefusesMissingMonthsAndBadQuotesByName) {
    FixingStore withGap;
    for (const auto& [date, level] : Fixings().FixingsOf("CPI"))
        if (date != Date(1, 6, 2023)) withGap.Add("CPI", date, level);
    const ZeroInflationCurve curve(Date(20, 3, 2024), Conventions(Period(3, Months), InflationInterpolation::Flat),
                                   {Period("1Y")}, {0.02}, withGap);
    EXPECT_EQ(testing::ErrorMessage([&] { curve.MonthlyIndex(Date(1, 6, 2023)); }),
              "Missing fixing of index 'CPI' for month 2023-06.");
    EXPECT_EQ(testing::ErrorMessage([&] { curve.MonthlyIndex(Date(1, 12, 2022)); }),
              "Missing fixing of index 'CPI' for month 2022-12.");
    EXPECT_EQ(testing::ErrorMessage([&] {
                  ZeroInflationCurve(Date(20, 3, 2024), Conventions(Period(-1, Months), InflationInterpolation::Flat),
                                     {Period("1Y")}, {0.02}, Fixings());
              }),
              "ZeroInflationCurve: the observation lag must not be negative");
    EXPECT_EQ(testing::ErrorMessage([&] {
                  ZeroInflationCurve(Date(20, 3, 2024), Conventions(Period(3, Months), InflationInterpolation::Flat),
                                     {Period("1M")}, {0.02}, Fixings());
              }),
              "ZeroInflationCurve: the zero-coupon swap 1M quote observes no month after the latest fixing");
}

}  // namespace
}  // namespace zep
