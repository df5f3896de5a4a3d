#include <gtest/gtest.h>

#include "ParamNames.hpp"

#include "FailureText.hpp"

#include <cmath>
#include <string>
#include <vector>

#include <boost/make_shared.hpp>

#include "lum-auxiliary/Error.hpp"
#include "lum-closed-form/VanillaOption.hpp"

namespace zep {
namespace {

// 15 Jan 2024 to 15 Jul 2024 is 16 + 29 + 31 + 30 + 31 + 30 + 15 = 182 days; delivery two
// days later, 184 days. Act365Fixed divides by 365.
const Date kReference(15, 1, 2024);
const Date kExpiry(15, 7, 2024);
const Date kDelivery(17, 7, 2024);
constexpr double kExpiryYears = 182.0 / 365.0;
constexpr double kDeliveryYears = 184.0 / 365.0;

VanillaOption::Terms TermsOf(int callPut, double strike, int buySell = VanillaOption::Buy,
                             double faceValue = 1.0) {
    VanillaOption::Terms terms;
    terms.buySell = buySell;
    terms.callPut = callPut;
    terms.faceValue = faceValue;
    terms.strike = strike;
    terms.referenceDate = kReference;
    terms.expiryDate = kExpiry;
    terms.settlementDate = kDelivery;
    terms.deliveryDate = kDelivery;
    return terms;
}

boost::shared_ptr<const VolatilitySource> Flat(double vol) {
    return boost::make_shared<FlatVolatility>(vol);
}

VanillaOption OnRates(int callPut, double strike, double spot, double rd, double rf, double vol,
                      int buySell = VanillaOption::Buy, double faceValue = 1.0) {
    return VanillaOption(TermsOf(callPut, strike, buySell, faceValue), spot,
                         VanillaOption::Carry::Rates(rd, rf), Flat(vol));
}

// A curve flat at one continuously compounded rate, measured Act365Fixed.
boost::shared_ptr<const YieldCurve> FlatCurve(double rate) {
    return boost::make_shared<YieldCurve>(kReference, std::vector<Date>{Date(15, 1, 2025), Date(15, 1, 2029)},
                                          std::vector<double>{rate, rate}, Continuous,
                                          DayCounter(Act365Fixed));
}


struct Case {
    int callPut;
    double strike, spot, rd, rf, vol;
};

class VanillaOptionCases : public ::testing::TestWithParam<Case> {};

TEST_P(VanillaOptionCases, FeedsTheEngineItsDatesAsYearFractions) {
    const Case c = GetParam();
    VanillaOption option = OnRates(c.callPut, c.strike, c.spot, c.rd, c.rf, c.vol);
    BSVanilla engine(c.callPut, c.strike, c.vol, kExpiryYears, kDeliveryYears, c.rd, c.rf, c.spot);
    EXPECT_DOUBLE_EQ(option.GetTimeToExpiry(), kExpiryYears);
    EXPECT_DOUBLE_EQ(option.GetTimeToDelivery(), kDeliveryYears);
    EXPECT_DOUBLE_EQ(option.GetTimeToSettlement(), kDeliveryYears);
    EXPECT_DOUBLE_EQ(option.Price(), engine.Price());
    EXPECT_DOUBLE_EQ(option.Delta(), engine.Delta());
    EXPECT_DOUBLE_EQ(option.Delta(false), engine.Delta(false));
    EXPECT_DOUBLE_EQ(option.Gamma(), engine.Gamma());
    EXPECT_DOUBLE_EQ(option.Vega(), engine.Vega());
    EXPECT_DOUBLE_EQ(option.Theta(), engine.Theta());
    EXPECT_DOUBLE_EQ(option.Volga(), engine.Volga());
    EXPECT_DOUBLE_EQ(option.Price(VanillaOption::GarmanKohlhagen), engine.Price());
}

TEST_P(VanillaOptionCases, CurvesGiveTheZeroRatesToDelivery) {
    const Case c = GetParam();
    VanillaOption onCurves(TermsOf(c.callPut, c.strike), c.spot,
                           VanillaOption::Carry::Curves(FlatCurve(c.rd), FlatCurve(c.rf)), Flat(c.vol));
    EXPECT_NEAR(onCurves.GetAccRate(), c.rd, 1e-14);
    EXPECT_NEAR(onCurves.GetUndRate(), c.rf, 1e-14);
    EXPECT_NEAR(onCurves.Price(), OnRates(c.callPut, c.strike, c.spot, c.rd, c.rf, c.vol).Price(), 1e-12);
}

TEST_P(VanillaOptionCases, CallMinusPutIsTheDiscountedForwardOnCurves) {
    const Case c = GetParam();
    const auto carry = VanillaOption::Carry::Curves(FlatCurve(c.rd), FlatCurve(c.rf));
    VanillaOption call(TermsOf(BSVanilla::Call, c.strike), c.spot, carry, Flat(c.vol));
    VanillaOption put(TermsOf(BSVanilla::Put, c.strike), c.spot, carry, Flat(c.vol));
    const double parity = c.spot * std::exp(-c.rf * kDeliveryYears) - c.strike * std::exp(-c.rd * kDeliveryYears);
    EXPECT_NEAR(call.Price() - put.Price(), parity, 1e-11);
}

TEST_P(VanillaOptionCases, SideAndNotionalScaleTheValues) {
    const Case c = GetParam();
    VanillaOption unit = OnRates(c.callPut, c.strike, c.spot, c.rd, c.rf, c.vol);
    VanillaOption sold = OnRates(c.callPut, c.strike, c.spot, c.rd, c.rf, c.vol, VanillaOption::Sell, 2.5e6);
    const double price = unit.Price();
    const double dfDelivery = std::exp(-c.rd * kDeliveryYears);
    EXPECT_DOUBLE_EQ(sold.PV(), -2.5e6 * price);
    EXPECT_NEAR(sold.MarketValue(), -2.5e6 * price / dfDelivery, 1e-6);
    // Settlement is the delivery date here, so both ways of carrying the value agree.
    EXPECT_NEAR(sold.DiscMarketValue(), sold.MarketValue(), 1e-6);
    const double phi = c.callPut == BSVanilla::Call ? 1.0 : -1.0;
    EXPECT_DOUBLE_EQ(sold.Payoff(), -2.5e6 * std::max(phi * (c.spot - c.strike), 0.0));
    // Traded at its fair premium, paid on the delivery date, the position has made nothing.
    sold.SetPremium(price / dfDelivery);
    EXPECT_NEAR(sold.DiscPnL(), 0.0, 1e-6);
    EXPECT_NEAR(sold.PnL(), 0.0, 1e-6);
    sold.SetPremium(0.0);
    EXPECT_DOUBLE_EQ(sold.PnL(), sold.MarketValue());
}

TEST_P(VanillaOptionCases, BumpedVolatilityRiskIsTheFiniteDifferenceOfPrice) {
    const Case c = GetParam();
    VanillaOption option = OnRates(c.callPut, c.strike, c.spot, c.rd, c.rf, c.vol);
    const double h = 1e-4;
    const double up = OnRates(c.callPut, c.strike, c.spot, c.rd, c.rf, c.vol + h).Price();
    const double down = OnRates(c.callPut, c.strike, c.spot, c.rd, c.rf, c.vol - h).Price();
    const double centre = option.Price();
    EXPECT_NEAR(option.DeltaPrice("spot_Volatility", h), (up - down) / (2 * h), 1e-9);
    EXPECT_NEAR(option.GammaPrice("spot_Volatility", h), (up - 2 * centre + down) / (h * h), 1e-4);
    // And both approach the closed-form vega and volga.
    EXPECT_NEAR(option.DeltaPrice("spot_Volatility", h), option.Vega(), 1e-5 * std::max(1.0, option.Vega()));
    EXPECT_NEAR(option.GammaPrice("spot_Volatility", 1e-3), option.Volga(), 1e-3 * std::max(1.0, std::fabs(option.Volga())));
    EXPECT_EQ(option.DeltaPrice("spot_Volatility", 0.0), 0.0);
    EXPECT_EQ(option.GammaPrice("spot_Volatility", 0.0), 0.0);
}

TEST_P(VanillaOptionCases, ForwardQuoteMatchesTheSpotQuote) {
    const Case c = GetParam();
    VanillaOption onSpot = OnRates(c.callPut, c.strike, c.spot, c.rd, c.rf, c.vol);
    const double forward = c.spot * std::exp((c.rd - c.rf) * kDeliveryYears);
    VanillaOption onForward = VanillaOption::FromForward(
        TermsOf(c.callPut, c.strike), forward, VanillaOption::Carry::Rates(c.rd, c.rf), Flat(c.vol), c.spot);
    EXPECT_NEAR(onForward.Price(), onSpot.Price(), 1e-10);
    EXPECT_NEAR(onForward.DeltaPrice("spot_Volatility", 1e-4), onSpot.DeltaPrice("spot_Volatility", 1e-4), 1e-7);
}

INSTANTIATE_TEST_SUITE_P(Markets, VanillaOptionCases,
                         ::testing::Values(Case{BSVanilla::Call, 1.10, 1.08, 0.035, 0.02, 0.09},
                                           Case{BSVanilla::Put, 1.10, 1.08, 0.035, 0.02, 0.09},
                                           Case{BSVanilla::Call, 95.0, 100.0, 0.01, 0.04, 0.30},
                                           Case{BSVanilla::Put, 120.0, 100.0, -0.005, 0.0, 0.45}),
                         [](const ::testing::TestParamInfo<Case>& info) {
                             const Case& c = info.param;
                             return std::string(c.callPut == BSVanilla::Call ? "Call" : "Put") + "_Strike" +
                                    zep::testing::NameOf(c.strike) + "_Spot" + zep::testing::NameOf(c.spot);
                         });

TEST(VanillaOption, StrikeQuotesDenoteTheirStrikes) {
    VanillaOption option = OnRates(BSVanilla::Call, 1.10, 1.08, 0.035, 0.02, 0.09);
    const double spot = 1.08, forward = option.GetForward();
    EXPECT_NEAR(forward, spot * std::exp((0.035 - 0.02) * kDeliveryYears), 1e-14);
    EXPECT_DOUBLE_EQ(option.StrikeFromQuote("call", "1.2345"), 1.2345);
    EXPECT_DOUBLE_EQ(option.StrikeFromQuote("CALL", "ATMF"), forward);
    EXPECT_DOUBLE_EQ(option.StrikeFromQuote("c", "atm"), forward);
    EXPECT_DOUBLE_EQ(option.StrikeFromQuote("put", "ATMS"), spot);
    EXPECT_NEAR(option.StrikeFromQuote("put", "ATMD"), forward * std::exp(0.5 * 0.09 * 0.09 * kExpiryYears), 1e-14);
    EXPECT_NEAR(option.StrikeFromQuote("call", "ATMF + 25 PIP"), forward + 0.0025, 1e-14);
    EXPECT_NEAR(option.StrikeFromQuote("call", "ATMF-10BPS"), forward - 0.0010, 1e-14);
    EXPECT_NEAR(option.StrikeFromQuote("call", "5% OTM"), spot * 1.05, 1e-14);
    EXPECT_NEAR(option.StrikeFromQuote("put", "OTM 5%"), spot * 0.95, 1e-14);
    EXPECT_NEAR(option.StrikeFromQuote("call", "ITMF 2.5"), forward * 0.975, 1e-14);
    EXPECT_NEAR(option.StrikeFromQuote("put", "2.5 ITMF"), forward * 1.025, 1e-14);
    // A delta quote is the strike whose delta is that figure: check by the delta itself.
    const double call25 = option.StrikeFromQuote("call", "25D");
    EXPECT_NEAR(BSVanilla(BSVanilla::Call, call25, 0.09, kExpiryYears, kDeliveryYears, 0.035, 0.02, spot).Delta(),
                0.25, 1e-9);
    const double put10 = option.StrikeFromQuote("put", "D10D");
    EXPECT_NEAR(BSVanilla(BSVanilla::Put, put10, 0.09, kExpiryYears, kDeliveryYears, 0.035, 0.02, spot).ForwardDelta(),
                -0.10, 1e-9);
    EXPECT_DOUBLE_EQ(option.getVolSurfaceData("put", "25D"), 0.09);
    EXPECT_EQ(zep::testing::FailureText([&] { option.getVolSurfaceData("straddle", "ATM"); }), "unknow side");
    EXPECT_EQ(zep::testing::FailureText([&] { option.StrikeFromQuote("call", "ATMX"); }), "'ATMX' is an invalid strike quote.");
}

TEST(VanillaOption, ExerciseKindsAndPricingMethodsRefuseWithTheirMessages) {
    VanillaOption european = OnRates(BSVanilla::Call, 100, 100, 0.01, 0.0, 0.2);
    for (int method : {2, 3, 4, 5, -1})
        EXPECT_EQ(zep::testing::FailureText([&] { european.Price(method); }), "not support Trinominal or BAW!") << method;
    VanillaOption::Terms terms = TermsOf(BSVanilla::Call, 100);
    terms.exerciseKind = VanillaOption::American;
    VanillaOption american(terms, 100, VanillaOption::Carry::Rates(0.01, 0.0), Flat(0.2));
    EXPECT_EQ(zep::testing::FailureText([&] { american.Price(VanillaOption::Trinomial); }), "not support Trinominal!");
    EXPECT_EQ(zep::testing::FailureText([&] { american.Delta(); }), "not support Trinominal or BAW!");
    terms.exerciseKind = VanillaOption::Bermudan;
    VanillaOption bermudan(terms, 100, VanillaOption::Carry::Rates(0.01, 0.0), Flat(0.2));
    EXPECT_EQ(zep::testing::FailureText([&] { bermudan.Vega(); }), "Not support BERMUDAN!");
    EXPECT_EQ(zep::testing::FailureText([&] { european.DeltaPrice("spot", 0.01); }), "not supported fieldName!");
    EXPECT_EQ(zep::testing::FailureText([&] { european.GammaPrice("spot_volatility", 0.01); }), "not supported fieldName!");
}

TEST(VanillaOption, ConstructionChecksDatesSideExerciseAndSources) {
    const auto rates = VanillaOption::Carry::Rates(0.01, 0.0);
    auto build = [&](VanillaOption::Terms terms) { VanillaOption(terms, 100.0, rates, Flat(0.2)); };
    auto buildOnForward = [&](VanillaOption::Terms terms) {
        VanillaOption::FromForward(terms, 100.0, rates, Flat(0.2));
    };
    VanillaOption::Terms early = TermsOf(BSVanilla::Call, 100);
    early.expiryDate = Date(14, 1, 2024);
    EXPECT_EQ(zep::testing::FailureText([&] { build(early); }), "Expiry date must after reference date!");
    EXPECT_EQ(zep::testing::FailureText([&] { buildOnForward(early); }), "Expiry date must after reference datel!");
    VanillaOption::Terms today = TermsOf(BSVanilla::Call, 100);
    today.expiryDate = kReference;
    EXPECT_EQ(zep::testing::FailureText([&] { build(today); }), zep::testing::kNoFailure);
    VanillaOption::Terms settled = TermsOf(BSVanilla::Call, 100);
    settled.settlementDate = Date(14, 7, 2024);
    EXPECT_EQ(zep::testing::FailureText([&] { build(settled); }), "Settlement date must on or after expiry date!");
    VanillaOption::Terms exotic = TermsOf(BSVanilla::Call, 100);
    exotic.exerciseKind = 3;
    EXPECT_EQ(zep::testing::FailureText([&] { build(exotic); }), "unknown option type(expiry nature)!");
    VanillaOption::Terms sideways = TermsOf(BSVanilla::Call, 100, 0);
    EXPECT_EQ(zep::testing::FailureText([&] { build(sideways); }), "unknow side");
    EXPECT_EQ(zep::testing::FailureText([&] { VanillaOption(TermsOf(BSVanilla::Call, 100), 100.0, rates, nullptr); }),
              "VolSurface is Null!");
    EXPECT_EQ(zep::testing::FailureText([&] { VanillaOption::FromForward(TermsOf(0, 100), std::nullopt, rates, Flat(0.2)); }),
              "No input forward!");
    EXPECT_EQ(zep::testing::FailureText([&] {
                  VanillaOption(TermsOf(0, 100), 100.0, VanillaOption::Carry::Curves(nullptr, FlatCurve(0.0)), Flat(0.2));
              }),
              "accrual (domestic) YieldCurve is Null!");
    EXPECT_EQ(zep::testing::FailureText([&] { OnRates(BSVanilla::Call, 100, -1.0, 0.0, 0.0, 0.2); }), " Spot must be positive.");
    EXPECT_EQ(zep::testing::FailureText([&] { OnRates(BSVanilla::Call, 100, 100.0, 0.0, 0.0, 0.0); }),
              "volatility must be a positive percentage!");
}

TEST(VanillaOption, ExpiringTodayIsWorthItsIntrinsicValue) {
    VanillaOption::Terms terms = TermsOf(BSVanilla::Put, 110);
    terms.expiryDate = terms.settlementDate = terms.deliveryDate = kReference;
    VanillaOption option(terms, 100.0, VanillaOption::Carry::Rates(0.05, 0.0), Flat(0.2));
    EXPECT_DOUBLE_EQ(option.Price(), 10.0);
    EXPECT_DOUBLE_EQ(option.Delta(), -1.0);
}

}  // namespace
}  // namespace zep
