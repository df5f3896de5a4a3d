#include <gtest/gtest.h>

#include "FailureText.hpp"
#include "ParamNames.hpp"

#include <cmath>
#include <stdexcept>
#include <string>

#include "lum-auxiliary/Error.hpp"
#include "lum-interest-rates/YieldCurve.hpp"

#include <boost/make_shared.hpp>

namespace {

using zep::Date;
using zep::YieldCurve;

const Date kReference(2, 1, 2024);
const zep::DayCounter kAct365(zep::Act365Fixed);
constexpr double kRate = 0.03;

double YearsTo(const Date& date) { return (date.SerialNumber() - kReference.SerialNumber()) / 365.0; }

std::vector<Date> Pillars() {
    std::vector<Date> dates;
    for (int days : {30, 91, 182, 365, 730, 1095, 1826, 3652}) dates.push_back(kReference + days);
    return dates;
}



YieldCurve FlatCurve(std::int32_t variable, std::int32_t method) {
    const std::vector<Date> dates = Pillars();
    return YieldCurve(kReference, dates, std::vector<double>(dates.size(), kRate), zep::Continuous, kAct365,
                      variable, method);
}

// A flat continuous rate is reproduced everywhere by these stored quantities and methods.
class FlatCurveSetting : public ::testing::TestWithParam<std::tuple<std::int32_t, std::int32_t>> {};

TEST_P(FlatCurveSetting, GivesClosedFormDiscountFactorsAndRates) {
    const auto [variable, method] = GetParam();
    const YieldCurve curve = FlatCurve(variable, method);
    for (int days : {1, 45, 200, 365, 800, 2000, 3500}) {
        const Date date = kReference + days;
        const double t = YearsTo(date);
        EXPECT_NEAR(curve.DiscountFactor(date), std::exp(-kRate * t), 1e-14) << days;
        EXPECT_NEAR(curve.ZeroRate(date, zep::Act365Fixed, true, zep::Continuous), kRate, 1e-12) << days;
        EXPECT_NEAR(curve.ZeroRate(date, zep::Act365Fixed, false, zep::Continuous), (std::exp(kRate * t) - 1) / t, 1e-12);
        EXPECT_NEAR(curve.ZeroRate(t, true, zep::Annual), std::exp(kRate) - 1, 1e-12);
        EXPECT_NEAR(curve.ForwardRate(date, date + 91, zep::Act365Fixed, true, zep::Continuous), kRate, 1e-12);
        const double tau = 91 / 365.0;
        EXPECT_NEAR(curve.ForwardRate(date, date + 91, -1, false, zep::Annual), (std::exp(kRate * tau) - 1) / tau, 1e-12);
        EXPECT_NEAR(curve.ForwardRate(date, date + 91, -1, true, zep::Quarterly),
                    4 * (std::exp(kRate / 4 * (4 * tau) / (4 * tau)) - 1), 1e-12);
    }
    // Par rate of an annual leg: (1 - D(T)) / (D(1) + ... + D(T)).
    double annuity = 0.0;
    for (int k = 1; k <= 3; ++k) annuity += std::exp(-kRate * k);
    EXPECT_NEAR(curve.ParRate(3.0), (1 - std::exp(-3 * kRate)) / annuity, 1e-14);
    const double half = std::exp(-kRate * 0.5);
    EXPECT_NEAR(curve.ParRate(0.5), (1 - half) / (0.5 * half), 1e-14);
    const double broken = std::exp(-kRate) + std::exp(-2 * kRate) + 0.5 * std::exp(-2.5 * kRate);
    EXPECT_NEAR(curve.ParRate(2.5), (1 - std::exp(-2.5 * kRate)) / broken, 1e-14);
}
INSTANTIATE_TEST_SUITE_P(
    StoredQuantities, FlatCurveSetting,
    ::testing::Values(std::tuple{zep::ContinuousZeroRates, zep::LinearInterpolation},
                      std::tuple{zep::ContinuousZeroRates, zep::CubicInterpolation},
                      std::tuple{zep::ContinuousZeroRates, zep::ClampedCubicInterpolation},
                      std::tuple{zep::ContinuousZeroRates, zep::FlatInterpolation},
                      std::tuple{zep::DiscountFactors, zep::LogLinearInterpolation}),
    [](const ::testing::TestParamInfo<FlatCurveSetting::ParamType>& info) {
        return zep::testing::NameOf(zep::InterpolatedVariableToString(std::get<0>(info.param))) + "_" +
               zep::InterpolationMethodToString(std::get<1>(info.param));
    });

TEST(YieldCurve, ZeroRateIsHeldFlatBeyondTheLastPillar) {
    const YieldCurve curve(kReference, {kReference + 365, kReference + 730}, {0.02, 0.04}, zep::Continuous, kAct365);
    EXPECT_NEAR(curve.DiscountFactor(10.0), std::exp(-0.4), 1e-14);
}

TEST(YieldCurve, DiscountFactorAtOrBeforeTimeZeroIsOne) {
    const YieldCurve curve = FlatCurve(zep::ContinuousZeroRates, zep::LinearInterpolation);
    EXPECT_EQ(curve.DiscountFactor(0.0), 1.0);
    EXPECT_EQ(curve.DiscountFactor(-2.0), 1.0);
    EXPECT_EQ(curve.DiscountFactor(kReference), 1.0);
}

TEST(YieldCurve, ForwardDiscountFactorByTimesIgnoresOrder) {
    const YieldCurve curve = FlatCurve(zep::ContinuousZeroRates, zep::LinearInterpolation);
    EXPECT_EQ(curve.DiscountFactor(1.0, 2.0), curve.DiscountFactor(2.0, 1.0));
    EXPECT_NEAR(curve.DiscountFactor(1.0, 2.0), std::exp(-kRate), 1e-15);
    EXPECT_EQ(curve.DiscountFactor(1.0, 1.0 + 1e-11), 1.0);
    // By dates the argument order counts.
    const Date a = kReference + 365, b = kReference + 730;
    EXPECT_NEAR(curve.DiscountFactor(a, b, -1), std::exp(-kRate), 1e-15);
    EXPECT_NEAR(curve.DiscountFactor(b, a, -1), std::exp(kRate), 1e-14);
}

TEST(YieldCurve, DiscountFactorsGainAReferencePillar) {
    const YieldCurve curve(kReference, {kReference + 365}, {0.97}, kAct365);
    ASSERT_EQ(curve.Dates().size(), 2u);
    EXPECT_EQ(curve.Dates().front(), kReference);
    EXPECT_NEAR(curve.DiscountFactor(kReference + 365), 0.97, 1e-15);
    // The reference pillar takes the second pillar's continuous rate, counted in days / 365.
    EXPECT_NEAR(curve.Variables().front(), -std::log(0.97), 1e-15);
}

TEST(YieldCurve, SimpleRateCurveAtTwoYears) {
    const YieldCurve curve(kReference, {kReference + 730}, {0.05}, zep::NoFrequency, kAct365, zep::SimpleZeroRates);
    EXPECT_NEAR(curve.DiscountFactor(2.0), 1 / 1.1, 1e-15);
    const YieldCurve fromFactors(kReference, {kReference, kReference + 730}, {1.0, 1 / 1.1}, kAct365, zep::SimpleZeroRates);
    EXPECT_NEAR(fromFactors.Variables()[0], 0.05, 1e-15);
    EXPECT_NEAR(fromFactors.Variables()[1], 0.05, 1e-15);
}

TEST(YieldCurve, ZeroRateAtTheReferenceDateIsTheFirstPillarsRate) {
    const YieldCurve curve(kReference, {kReference + 365, kReference + 730}, {0.02, 0.04}, zep::Continuous, kAct365);
    EXPECT_NEAR(curve.ZeroRate(kReference, -1, true, zep::Continuous), 0.02, 1e-14);
    EXPECT_NEAR(curve.ZeroRate(0.0, true, zep::Continuous), 0.02, 1e-14);
    EXPECT_NEAR(curve.Rate(-1.0), 0.02, 1e-15);
}

TEST(YieldCurve, SimpleAndAnnualInputsConvertToTheStoredQuantity) {
    const std::vector<Date> dates = {kReference + 730};
    const YieldCurve simple(kReference, dates, {0.05}, zep::Once, kAct365, zep::ContinuousZeroRates);
    EXPECT_NEAR(simple.Variables()[1], std::log(1.1) / 2, 1e-15);
    const YieldCurve factors(kReference, dates, {0.05}, zep::Once, kAct365, zep::DiscountFactors);
    EXPECT_NEAR(factors.Variables()[1], 1 / 1.1, 1e-15);
    const YieldCurve annual(kReference, dates, {0.03}, zep::Continuous, kAct365, zep::AnnualZeroRates);
    EXPECT_NEAR(annual.Variables()[1], (std::exp(0.06) - 1) / 2, 1e-15);
    // Code -1 reads its rate as annually compounded.
    EXPECT_NEAR(annual.DiscountFactor(2.0), std::pow(1 + (std::exp(0.06) - 1) / 2, -2.0), 1e-15);
}

TEST(YieldCurve, TenorsCountFromTheReferenceDate) {
    const YieldCurve curve(kReference, std::vector<zep::Period>{zep::Period("1Y"), zep::Period("2Y")}, {0.02, 0.03},
                           zep::Continuous, kAct365);
    EXPECT_EQ(curve.Dates()[1], Date(2, 1, 2025));
    EXPECT_EQ(curve.Dates()[2], Date(2, 1, 2026));
}

TEST(YieldCurve, ZeroRateSpreadShiftsEveryRate) {
    YieldCurve curve = FlatCurve(zep::ContinuousZeroRates, zep::LinearInterpolation);
    curve.SetZeroRateSpread(0.01);
    EXPECT_NEAR(curve.DiscountFactor(2.0), std::exp(-0.04 * 2), 1e-15);
    EXPECT_EQ(curve.ZeroRateSpread(), 0.01);
}

// With -ln D(t) = a t + b t^2 the instantaneous forward is a + 2 b t: the parabolas through
// pillar triples recover it exactly, and the natural spline of a straight line is that line.
TEST(YieldCurve, SplineTableGivesTheInstantaneousForwardRate) {
    const double a = 0.02, b = 0.001;
    std::vector<Date> dates = Pillars();
    std::vector<double> factors;
    for (const Date& d : dates) factors.push_back(std::exp(-(a * YearsTo(d) + b * YearsTo(d) * YearsTo(d))));
    YieldCurve curve(kReference, dates, factors, kAct365, zep::DiscountFactors, zep::LogLinearInterpolation);
    curve.SetInterpolation(zep::SplineTableInterpolation);
    for (int days : {10, 100, 400, 1500, 3000}) {
        const Date start = kReference + days;
        EXPECT_NEAR(curve.ForwardRate(start, start + 30, -1, false, zep::Annual), a + 2 * b * YearsTo(start), 1e-12) << days;
    }
    EXPECT_NEAR(curve.ForwardRate(kReference - 5, kReference, -1, false, zep::Annual), a, 1e-12);
    EXPECT_NEAR(curve.ForwardRate(kReference + 5000, kReference + 5001, -1, false, zep::Annual), a + 2 * b * 10.0055, 1e-3);
    EXPECT_NEAR(curve.SplineTableValue(50.0), a + 2 * b * YearsTo(dates.back()), 1e-12);
}

TEST(YieldCurve, SetInterpolationFailureKeepsTheCurve) {
    YieldCurve curve = FlatCurve(zep::ContinuousZeroRates, zep::LinearInterpolation);
    EXPECT_EQ(zep::testing::FailureText([&] { curve.SetInterpolation(10); }), "SetInterpolation failed");
    EXPECT_EQ(curve.GetInterpolationMethod(), zep::LinearInterpolation);
    EXPECT_NEAR(curve.DiscountFactor(2.0), std::exp(-2 * kRate), 1e-15);
    YieldCurve single(kReference, {kReference}, {0.03}, zep::Continuous, kAct365);
    EXPECT_EQ(zep::testing::FailureText([&] { single.SetInterpolation(zep::SplineTableInterpolation); }), "SetInterpolation failed");
}

TEST(YieldCurve, ConstructionFailures) {
    const std::vector<Date> two = {kReference + 10, kReference + 20};
    EXPECT_EQ(zep::testing::FailureText([&] { YieldCurve(kReference, two, {0.9}, kAct365); }),
              "Must enter the same number of dates and discount factors.");
    EXPECT_EQ(zep::testing::FailureText([&] { YieldCurve(kReference, std::vector<Date>{}, std::vector<double>{}, kAct365); }),
              "YieldCurve: dates and discountFactors must not be empty.");
    EXPECT_EQ(zep::testing::FailureText([&] { YieldCurve(kReference, {kReference}, {0.99}, kAct365); }), "First discount factor must equal 1.0.");
    EXPECT_EQ(zep::testing::FailureText([&] { YieldCurve(kReference, {kReference - 1}, {1.0}, kAct365); }), "First discount factor must equal 1.0.");
    EXPECT_NE(zep::testing::ExceptionWhat([&] { YieldCurve(kReference, {kReference}, {0.99}, kAct365); }).find("(zep::YieldCurve::YieldCurve: YieldCurve.cpp, l."),
              std::string::npos);
    EXPECT_EQ(zep::testing::FailureText([&] { YieldCurve(kReference, two, {0.01}, zep::Continuous, kAct365); }),
              "Must enter the same number of dates and zero rates.");
    EXPECT_EQ(zep::testing::FailureText([&] { YieldCurve(kReference, std::vector<Date>{}, std::vector<double>{}, zep::Continuous, kAct365); }),
              "YieldCurve: dates and zeroRates must not be empty (cannot use dates.front() on empty vector).");
    EXPECT_EQ(zep::testing::FailureText([&] { YieldCurve(kReference, two, {0.01, 0.02}, zep::Annual, kAct365); }),
              "Compounding frequency can only be one of Once, NoFrequency or Continuous");
    EXPECT_EQ(zep::testing::FailureText([&] { YieldCurve(kReference, std::vector<zep::Period>{}, {}, zep::Continuous, kAct365); }),
              "YieldCurve: MaturityDates(tenors) produced no pillars; check tenors/zeroRates.");
    EXPECT_EQ(zep::testing::FailureText([&] { YieldCurve(kReference, {kReference}, {1.0}, kAct365); }),
              "YieldCurve: a single pillar gives no rate at the reference date.");
    EXPECT_EQ(zep::testing::FailureText([&] { YieldCurve(kReference, {kReference + 20, kReference + 10}, {0.9, 0.8}, kAct365); }),
              "YieldCurve: dates must be strictly increasing.");
    EXPECT_EQ(zep::testing::FailureText([&] { YieldCurve(kReference, two, {0.9, 0.8}, kAct365, zep::HazardRates); }),
              "Wrong interpolated variable");
    EXPECT_EQ(zep::testing::FailureText([&] { YieldCurve(kReference, two, {0.9, -0.8}, kAct365); }),
              "YieldCurve: discount factors must be positive.");
}

TEST(YieldCurve, RateFailures) {
    const YieldCurve curve = FlatCurve(zep::ContinuousZeroRates, zep::LinearInterpolation);
    const Date d = kReference + 100;
    EXPECT_EQ(zep::testing::FailureText([&] { curve.ZeroRate(d, -1, true, zep::Once); }),
              "Cannot compound zero rate with no frequency or frequency once");
    EXPECT_NE(zep::testing::ExceptionWhat([&] { curve.ZeroRate(d, -1, true, zep::NoFrequency); }).find("zep::YieldCurve::ZeroRate"), std::string::npos);
    EXPECT_EQ(zep::testing::FailureText([&] { curve.ForwardRate(d, d + 1, -1, true, zep::NoFrequency); }),
              "Cannot compound a forward rate with no frequency or frequency once");
    EXPECT_NE(zep::testing::ExceptionWhat([&] { curve.ForwardRate(d, d + 1, -1, true, zep::Once); }).find("zep::YieldCurve::ForwardRate"), std::string::npos);
    EXPECT_EQ(zep::testing::FailureText([&] { curve.ForwardRate({d, d}, {d + 1}, -1, false, zep::Annual); }),
              "Number of start dates (2) must equal number of end dates(1");
    EXPECT_EQ(curve.ForwardRate(d, d, -1, false, zep::Annual), 0.0);
}

TEST(YieldCurve, VectorForwardRateIsElementWise) {
    const YieldCurve curve(kReference, Pillars(), {0.01, 0.012, 0.015, 0.02, 0.022, 0.025, 0.03, 0.031}, zep::Continuous, kAct365);
    const std::vector<Date> starts = {kReference + 10, kReference + 400}, ends = {kReference + 200, kReference + 900};
    const std::vector<double> rates = curve.ForwardRate(starts, ends, -1, true, zep::Semiannual);
    for (std::size_t i = 0; i < 2; ++i)
        EXPECT_EQ(rates[i], curve.ForwardRate(starts[i], ends[i], -1, true, zep::Semiannual));
}

TEST(YieldCurve, JsonRoundTripKeepsEveryField) {
    YieldCurve curve(kReference, Pillars(), {0.01, 0.012, 0.015, 0.02, 0.022, 0.025, 0.03, 0.031}, zep::Continuous,
                     kAct365, zep::ContinuousZeroRates, zep::ClampedCubicInterpolation, "EUR 6M");
    curve.SetZeroRateSpread(0.0013);
    curve.SetBeginOfDay(true);
    const auto loaded = YieldCurve::FromJson(curve.ToJson());
    EXPECT_EQ(loaded->ToJson(), curve.ToJson());
    for (double t = 0.01; t < 12.0; t += 0.37) EXPECT_EQ(loaded->DiscountFactor(t), curve.DiscountFactor(t)) << t;
    EXPECT_EQ(loaded->Label(), "EUR 6M");
    EXPECT_TRUE(loaded->IsBeginOfDay());
    curve.SetInterpolation(zep::SplineTableInterpolation);
    const auto spline = YieldCurve::FromJson(curve.ToJson());
    EXPECT_EQ(spline->SplineTableValue(3.3), curve.SplineTableValue(3.3));
    EXPECT_THROW(YieldCurve::FromJson("{not json"), std::invalid_argument);
}

struct ConstantModel : zep::ParametricRateModel {
    double Rate(double t) const override { return 0.04 + 0.01 * t; }
};

TEST(YieldCurve, ParametricCurveReadsTheModel) {
    YieldCurve curve = FlatCurve(zep::ContinuousZeroRates, zep::LinearInterpolation);
    curve.SetParametricModel(boost::shared_ptr<const zep::ParametricRateModel>(new ConstantModel));
    EXPECT_NEAR(curve.DiscountFactor(2.0), std::exp(-(0.06) * 2), 1e-15);
}

struct QuotedPoints : zep::ForwardPointsCurve {
    double Spot(const std::string& side) const override { return side == "MID" ? 1.10 : 0.0; }
    double Scale() const override { return 10000.0; }
    double ForwardPoints(double t) const override { return 50.0 * t; }
};

struct ImpliedPoints : QuotedPoints {
    boost::shared_ptr<const YieldCurve> first, second;
    boost::shared_ptr<const YieldCurve> FirstImpliedCurve() const override { return first; }
    boost::shared_ptr<const YieldCurve> SecondImpliedCurve() const override { return second; }
};

boost::shared_ptr<const YieldCurve> SimpleFlat(double rate) {
    return boost::shared_ptr<const YieldCurve>(
        new YieldCurve(kReference, {kReference + 3650}, {rate}, zep::NoFrequency, kAct365, zep::SimpleZeroRates));
}

// Covered interest parity F / S = (1 + t r_ccy2) / (1 + t r_ccy1) for simple rates.
TEST(YieldCurve, ImpliedCurveSatisfiesCoveredInterestParity) {
    const double other = 0.02, t = 1.5, spot = 1.10;
    const double forward = spot + 50.0 * t / 10000.0;
    for (bool isCCY2 : {false, true}) {
        YieldCurve curve(kReference, {kReference + 3650}, {0.0}, zep::NoFrequency, kAct365, zep::SimpleZeroRates);
        curve.SetImpliedCurve(SimpleFlat(other), boost::shared_ptr<const zep::ForwardPointsCurve>(new QuotedPoints), isCCY2);
        const double growth = 1.0 / curve.DiscountFactor(t);
        if (isCCY2) EXPECT_NEAR(growth / (1 + t * other), forward / spot, 1e-14);
        else EXPECT_NEAR((1 + t * other) / growth, forward / spot, 1e-14);
        EXPECT_EQ(curve.Rate(0.0), 0.0);
    }
    auto implied = boost::make_shared<ImpliedPoints>();
    implied->first = SimpleFlat(0.05);
    implied->second = SimpleFlat(0.01);
    YieldCurve curve(kReference, {kReference + 3650}, {0.0}, zep::NoFrequency, kAct365, zep::SimpleZeroRates);
    curve.SetImpliedCurve(SimpleFlat(other), implied, false);
    const double impliedForward = spot * (1 + t * 0.05) / (1 + t * 0.01);
    EXPECT_NEAR((1 + t * other) * curve.DiscountFactor(t), impliedForward / spot, 1e-14);
}

}  // namespace
