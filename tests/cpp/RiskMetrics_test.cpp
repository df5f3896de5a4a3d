#include <gtest/gtest.h>

#include <cmath>
#include <string>
#include <vector>

#include <boost/make_shared.hpp>

#include "lum-risk-metrics/BondAdapter.hpp"
#include "lum-risk-metrics/FXForwardAdapter.hpp"
#include "lum-risk-metrics/Portfolio.hpp"
#include "lum-risk-metrics/SwapAdapter.hpp"
#include "lum-risk-metrics/VanillaOptionAdapter.hpp"

namespace zep::metrics {
namespace {

Date D(const char* text) { return Date(std::string(text)); }

const Date kToday = D("2024-01-15");
const std::vector<Date> kPillars{D("2024-01-15"), D("2025-01-15"), D("2027-01-15"), D("2034-01-15"), D("2044-01-15")};
const std::vector<double> kZeroRates{0.030, 0.031, 0.029, 0.033, 0.035};

// The curve with every pillar's continuous zero rate moved by `shift`: the bumped market built
// from scratch, as a risk system without a shift facility would.
boost::shared_ptr<const YieldCurve> Curve(double shift = 0.0, double level = 0.0) {
    std::vector<double> rates = kZeroRates;
    for (double& rate : rates) rate += shift + level;
    return boost::make_shared<YieldCurve>(kToday, kPillars, rates, Continuous, DayCounter(Act365Fixed));
}

Schedule ScheduleOf(const char* start, const char* end, const char* tenor, DayCounter dayCounter) {
    ScheduleRules rules;
    rules.tenor = Period(std::string(tenor));
    rules.centres = "TARGET";
    rules.dayCounter = dayCounter;
    return Schedule(D(start), D(end), rules, Calendar::Shared());
}

// The schedule contributes only its dates: the coupons count with the bond's Act/Act ICMA.
boost::shared_ptr<const Bond> TenYearBond() {
    BondTerms terms;
    terms.couponRate = 0.04;
    return boost::make_shared<Bond>(ScheduleOf("2023-06-15", "2033-06-15", "6M", DayCounter(Act365Fixed)), terms);
}

// Receive 3.5% annually on 1m against EURIBOR6M for five years.
boost::shared_ptr<const Swap> FiveYearSwap() {
    LegTerms fixed;
    fixed.notionals = {1e6};
    fixed.fixedRate = 0.035;
    LegTerms floating;
    floating.kind = CouponKind::Floating;
    floating.notionals = {1e6};
    floating.index = "EURIBOR6M";
    return boost::make_shared<Swap>(
        Leg(ScheduleOf("2024-03-15", "2029-03-15", "1Y", DayCounter(Thirty360)), fixed, Calendar::Shared()),
        Leg(ScheduleOf("2024-03-15", "2029-03-15", "6M", DayCounter(Act360)), floating, Calendar::Shared()));
}

BondAdapter BondOn(boost::shared_ptr<const YieldCurve> curve, double face = 1e6) {
    return BondAdapter(TenYearBond(), std::move(curve), face);
}

SwapAdapter SwapOn(const boost::shared_ptr<const YieldCurve>& curve) {
    return SwapAdapter(FiveYearSwap(), {curve, curve, nullptr}, {curve, curve, nullptr});
}

FXForwardAdapter ForwardOn(double spot, boost::shared_ptr<const YieldCurve> quote, boost::shared_ptr<const YieldCurve> base) {
    return FXForwardAdapter(boost::make_shared<FXForward>(1, 1e6, 1.10, D("2025-01-17")),
                            {spot, D("2024-01-17"), std::move(quote), std::move(base), std::nullopt, 1e4});
}

VanillaOptionAdapter CallOn(double spot, double vol, int buySell = VanillaOption::Buy) {
    VanillaOption::Terms terms;
    terms.buySell = buySell;
    terms.callPut = BSVanilla::Call;
    terms.faceValue = 1e6;
    terms.strike = 1.10;
    terms.referenceDate = kToday;
    terms.expiryDate = D("2024-07-15");
    terms.settlementDate = D("2024-07-17");
    terms.deliveryDate = D("2024-07-17");
    return VanillaOptionAdapter(boost::make_shared<VanillaOption>(
        terms, spot, VanillaOption::Carry::Rates(0.03, 0.01), boost::make_shared<FlatVolatility>(vol)));
}

double PV(const InstrumentAdapter& adapter) { return adapter.Compute(Metric::PV).Value(); }

TEST(RiskMetrics, DV01IsHalfThePVChangeBetweenCurvesOneBasisPointUpAndDown) {
    const auto base = Curve();
    const double bp = 1e-4;
    EXPECT_NEAR(BondOn(base).Compute(Metric::DV01).Value(), (PV(BondOn(Curve(bp))) - PV(BondOn(Curve(-bp)))) / 2, 1e-6);
    EXPECT_NEAR(SwapOn(base).Compute(Metric::DV01).Value(), (PV(SwapOn(Curve(bp))) - PV(SwapOn(Curve(-bp)))) / 2, 1e-6);
    const double forwardDV01 = (PV(ForwardOn(1.08, Curve(bp), Curve(bp, -0.01))) -
                                PV(ForwardOn(1.08, Curve(-bp), Curve(-bp, -0.01)))) / 2;
    EXPECT_NEAR(ForwardOn(1.08, base, Curve(0.0, -0.01)).Compute(Metric::DV01).Value(), forwardDV01, 1e-6);
}

// The pillar moves add up to the parallel move, so the key-rate DV01s add up to the DV01.
TEST(RiskMetrics, KeyRateDV01sAddUpToTheDV01) {
    const auto base = Curve();
    const auto check = [](const InstrumentAdapter& adapter, std::size_t buckets) {
        const MetricResultVector profile = adapter.Profile(Metric::KEY_RATE_DV01);
        ASSERT_EQ(profile.size(), buckets);
        double total = 0.0;
        for (const MetricResult& bucket : profile) total += bucket.Value();
        const double dv01 = adapter.Compute(Metric::DV01).Value();
        EXPECT_NEAR(total, dv01, 1e-6 * std::abs(dv01));
        EXPECT_FALSE(adapter.Compute(Metric::KEY_RATE_DV01).available);
    };
    check(BondOn(base), kPillars.size());
    check(SwapOn(base), kPillars.size());
    check(ForwardOn(1.08, base, Curve(0.0, -0.01)), 2 * kPillars.size());
    EXPECT_EQ(SwapOn(base).Profile(Metric::KEY_RATE_DV01)[1].label, "curve 1:" + kPillars[1].ToString());
}

// A pillar moved by 1bp on its own changes the PV by what a curve rebuilt with that pillar's rate
// 1bp higher gives.
TEST(RiskMetrics, AKeyRateDV01IsThePVChangeOfThatPillarsRate) {
    const std::size_t pillar = 3;
    const auto movedBy = [&](double shift) {
        std::vector<double> rates = kZeroRates;
        rates[pillar] += shift;
        return boost::make_shared<YieldCurve>(kToday, kPillars, rates, Continuous, DayCounter(Act365Fixed));
    };
    const double expected = (PV(BondOn(movedBy(1e-4))) - PV(BondOn(movedBy(-1e-4)))) / 2;
    EXPECT_NEAR(BondOn(Curve()).Profile(Metric::KEY_RATE_DV01)[pillar].Value(), expected, 1e-7);
}

TEST(RiskMetrics, KeyRatesNeedPillarsOfZeroRates) {
    const auto discountFactorCurve = boost::make_shared<YieldCurve>(
        kToday, std::vector<Date>{D("2025-01-15"), D("2034-01-15")}, std::vector<double>{0.97, 0.7}, DayCounter(Act365Fixed),
        DiscountFactors);
    const MetricResultVector profile = BondOn(discountFactorCurve).Profile(Metric::KEY_RATE_DV01);
    ASSERT_EQ(profile.size(), 1u);
    EXPECT_FALSE(profile[0].available);
    EXPECT_EQ(profile[0].provenance, MetricProvenance::ERROR_FALLBACK);
}

TEST(RiskMetrics, DV01HasTheSignOfTheRateExposure) {
    EXPECT_LT(BondOn(Curve()).Compute(Metric::DV01).Value(), 0.0);  // a bond holder loses when rates rise
    EXPECT_LT(SwapOn(Curve()).Compute(Metric::DV01).Value(), 0.0);  // so does the fixed-rate receiver
}

// A bond's modified duration on the curve is -dPV/dr / PV; the 10y 4% bond sits near 8 years.
TEST(RiskMetrics, ModifiedDurationIsTheRelativePVChangePerUnitRate) {
    const double bp = 1e-4;
    const double slope = (PV(BondOn(Curve(bp))) - PV(BondOn(Curve(-bp)))) / (2 * bp);
    const double duration = BondOn(Curve()).Compute(Metric::MODIFIED_DURATION).Value();
    EXPECT_NEAR(duration, -slope / PV(BondOn(Curve())), 1e-9);
    EXPECT_GT(duration, 7.0);
    EXPECT_LT(duration, 9.0);
}

TEST(RiskMetrics, SwapParRateRepricesTheSwapToZero) {
    const double parPercent = SwapOn(Curve()).Compute(Metric::PAR_RATE).Value();
    LegTerms fixed;
    fixed.notionals = {1e6};
    fixed.fixedRate = parPercent / 100;
    LegTerms floating;
    floating.kind = CouponKind::Floating;
    floating.notionals = {1e6};
    floating.index = "EURIBOR6M";
    const auto atPar = boost::make_shared<Swap>(
        Leg(ScheduleOf("2024-03-15", "2029-03-15", "1Y", DayCounter(Thirty360)), fixed, Calendar::Shared()),
        Leg(ScheduleOf("2024-03-15", "2029-03-15", "6M", DayCounter(Act360)), floating, Calendar::Shared()));
    const auto curve = Curve();
    EXPECT_NEAR(PV(SwapAdapter(atPar, {curve, curve, nullptr}, {curve, curve, nullptr})), 0.0, 1e-6);
}

TEST(RiskMetrics, FXDeltaIsThePVChangeForOnePercentOnSpot) {
    const auto quote = Curve();
    const auto base = Curve(0.0, -0.01);
    const double spot = 1.08;
    const double slope = (PV(ForwardOn(spot + 1e-4, quote, base)) - PV(ForwardOn(spot - 1e-4, quote, base))) / 2e-4;
    EXPECT_NEAR(ForwardOn(spot, quote, base).Compute(Metric::FX_DELTA).Value(), slope * 0.01 * spot, 1e-6);
}

// Greeks of the option against differences of its PV under moved spot and volatility.
TEST(RiskMetrics, OptionGreeksMatchFiniteDifferencesOfPV) {
    const double spot = 1.09, vol = 0.1, h = 1e-4;
    const auto option = CallOn(spot, vol, VanillaOption::Sell);
    const double up = PV(CallOn(spot + h, vol, VanillaOption::Sell));
    const double down = PV(CallOn(spot - h, vol, VanillaOption::Sell));
    const double mid = PV(option);
    const double delta = (up - down) / (2 * h) * 0.01 * spot;
    const double gamma = (up - 2 * mid + down) / (h * h) * std::pow(0.01 * spot, 2);
    const double vega = (PV(CallOn(spot, vol + h, VanillaOption::Sell)) - PV(CallOn(spot, vol - h, VanillaOption::Sell))) / (2 * h) * 0.01;
    EXPECT_NEAR(option.Compute(Metric::DELTA).Value(), delta, 1e-5 * std::abs(delta));
    EXPECT_NEAR(option.Compute(Metric::GAMMA).Value(), gamma, 1e-4 * std::abs(gamma));
    EXPECT_NEAR(option.Compute(Metric::VEGA).Value(), vega, 1e-5 * std::abs(vega));
    EXPECT_LT(option.Compute(Metric::DELTA).Value(), 0.0);  // a sold call loses as spot rises
}

struct Missing {
    Metric metric;
    const char* family;
};

class UnavailableMetric : public ::testing::TestWithParam<Missing> {};

TEST_P(UnavailableMetric, CarriesAReasonAndNoValue) {
    const auto curve = Curve();
    const std::string family = GetParam().family;
    const MetricResult result = family == "bond"   ? BondOn(curve).Compute(GetParam().metric)
                                : family == "swap" ? SwapOn(curve).Compute(GetParam().metric)
                                : family == "fx"   ? ForwardOn(1.08, curve, curve).Compute(GetParam().metric)
                                                   : CallOn(1.09, 0.1).Compute(GetParam().metric);
    EXPECT_FALSE(result.available);
    EXPECT_FALSE(result.reason.empty());
    EXPECT_EQ(result.provenance, MetricProvenance::NORMAL);
    EXPECT_EQ(result.unit, UnitOf(GetParam().metric));
    EXPECT_THROW(result.Value(), std::runtime_error);
}

INSTANTIATE_TEST_SUITE_P(RiskMetrics, UnavailableMetric,
                         ::testing::Values(Missing{Metric::VEGA, "bond"}, Missing{Metric::DELTA, "bond"},
                                           Missing{Metric::FX_DELTA, "swap"}, Missing{Metric::THETA, "swap"},
                                           Missing{Metric::DELTA, "fx"}, Missing{Metric::PAR_RATE, "fx"},
                                           Missing{Metric::DV01, "option"}, Missing{Metric::MODIFIED_DURATION, "option"}));

TEST(RiskMetrics, AFailingComputationIsUnavailableWithTheLibraryMessage) {
    // The swap starts before the curve's date: its first floating coupon needs a fixing nobody gave.
    const auto curve = boost::make_shared<YieldCurve>(D("2024-06-01"), std::vector<Date>{D("2025-01-15"), D("2034-01-15")},
                                                      std::vector<double>{0.03, 0.033}, Continuous, DayCounter(Act365Fixed));
    const MetricResult result = SwapOn(curve).Compute(Metric::PV);
    EXPECT_FALSE(result.available);
    EXPECT_EQ(result.provenance, MetricProvenance::ERROR_FALLBACK);
    EXPECT_FALSE(result.reason.empty());
}

TEST(RiskMetrics, AnUnknownMetricCodeIsRefused) {
    EXPECT_THROW(BondOn(Curve()).Compute(static_cast<Metric>(999)), std::invalid_argument);
}

boost::shared_ptr<const InstrumentAdapter> Shared(auto adapter) {
    return boost::make_shared<decltype(adapter)>(std::move(adapter));
}

Portfolio TwoDesks() {
    const auto curve = Curve();
    Portfolio portfolio;
    portfolio.Add({"B1", Shared(BondOn(curve)), 2.0, {{"desk", "rates"}, {"ccy", "EUR"}}});
    portfolio.Add({"S1", Shared(SwapOn(curve)), -1.5, {{"desk", "rates"}, {"ccy", "EUR"}}});
    portfolio.Add({"F1", Shared(ForwardOn(1.08, curve, Curve(0.0, -0.01))), 3.0, {{"desk", "fx"}, {"ccy", "USD"}}});
    portfolio.Add({"O1", Shared(CallOn(1.09, 0.1)), 1.0, {{"desk", "fx"}}});
    return portfolio;
}

TEST(Portfolio, SumsByTagEqualHandSums) {
    const Portfolio portfolio = TwoDesks();
    const auto& p = portfolio.Positions();
    const auto metric = [&](std::size_t i, Metric m) { return p[i].quantity * p[i].instrument->Compute(m).Value(); };
    const auto byDesk = portfolio.AggregateBy(Metric::PV, "desk");
    ASSERT_EQ(byDesk.size(), 2u);
    EXPECT_NEAR(byDesk.at("rates").Value(), metric(0, Metric::PV) + metric(1, Metric::PV), 1e-6);
    EXPECT_NEAR(byDesk.at("fx").Value(), metric(2, Metric::PV) + metric(3, Metric::PV), 1e-6);
    const auto byCurrency = portfolio.AggregateBy(Metric::DV01, "ccy");
    EXPECT_NEAR(byCurrency.at("EUR").Value(), metric(0, Metric::DV01) + metric(1, Metric::DV01), 1e-6);
    EXPECT_FALSE(byCurrency.at("").available);  // the option has no DV01 and no currency tag
    EXPECT_NE(byCurrency.at("").reason.find("O1"), std::string::npos);
}

TEST(Portfolio, DurationAveragesWithMarketValueWeights) {
    const auto curve = Curve();
    Portfolio portfolio;
    const auto longBond = Shared(BondOn(curve));
    BondTerms shortTerms;
    shortTerms.couponRate = 0.02;
    const auto shortBond = Shared(BondAdapter(
        boost::make_shared<Bond>(ScheduleOf("2023-09-01", "2026-09-01", "6M", DayCounter(Act365Fixed)), shortTerms), curve, 1e6));
    portfolio.Add({"L", longBond, 1.0, {}});
    portfolio.Add({"S", shortBond, 3.0, {}});
    const double mvL = longBond->Compute(Metric::MARKET_VALUE).Value(), mvS = 3 * shortBond->Compute(Metric::MARKET_VALUE).Value();
    const double expected = (mvL * longBond->Compute(Metric::MODIFIED_DURATION).Value() +
                             mvS * shortBond->Compute(Metric::MODIFIED_DURATION).Value()) / (mvL + mvS);
    EXPECT_NEAR(portfolio.Aggregate(Metric::MODIFIED_DURATION).Value(), expected, 1e-12);
}

TEST(Portfolio, ParRatesDoNotAggregateOverSeveralTrades) {
    const auto curve = Curve();
    Portfolio portfolio;
    portfolio.Add({"S1", Shared(SwapOn(curve)), 1.0, {{"book", "a"}}});
    portfolio.Add({"S2", Shared(SwapOn(curve)), 1.0, {{"book", "b"}}});
    EXPECT_FALSE(portfolio.Aggregate(Metric::PAR_RATE).available);
    EXPECT_TRUE(portfolio.AggregateBy(Metric::PAR_RATE, "book").at("a").available);
}

TEST(Portfolio, RefusesDuplicateIdentifiersAndMissingInstruments) {
    Portfolio portfolio = TwoDesks();
    EXPECT_THROW(portfolio.Add({"B1", Shared(BondOn(Curve())), 1.0, {}}), std::invalid_argument);
    EXPECT_THROW(portfolio.Add({"X", nullptr, 1.0, {}}), std::invalid_argument);
    EXPECT_THROW(portfolio.Add({"Y", Shared(BondOn(Curve())), NAN, {}}), std::invalid_argument);
    EXPECT_EQ(portfolio.Size(), 4u);
}

}  // namespace
}  // namespace zep::metrics
