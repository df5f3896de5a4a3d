#include <gtest/gtest.h>

#include "FailureText.hpp"
#include "ParamNames.hpp"

#include <cmath>
#include <limits>
#include <stdexcept>
#include <string>
#include <vector>

#include <boost/make_shared.hpp>

#include "lum-closed-form/BSVanilla.hpp"
#include "lum-closed-form/NormalDistribution.hpp"
#include "lum-closed-form/VanillaOption.hpp"
#include "lum-fxo-market/FXVolSurface.hpp"

namespace zep {
namespace {

using testing::FailureText;

// A EUR/USD market: USD (domestic) at 4.3%, EUR (foreign) at 2.6%, continuously compounded and
// flat, so that the vanilla engine on the same two rates is an independent reference.
const Date kReference(16, 11, 2026);
constexpr double kSpot = 1.0850;
constexpr double kUsdRate = 0.043, kEurRate = 0.026;
const std::vector<std::string> kLabels{"ATM", "25RR", "25BF", "10RR", "10BF"};
const std::vector<Period> kTenors{Period("1W"), Period("1M"), Period("3M"), Period("6M"),
                                  Period("1Y"), Period("2Y")};
const std::vector<std::vector<double>> kQuotes{
    {0.0720, -0.0020, 0.0018, -0.0036, 0.0060}, {0.0750, -0.0030, 0.0020, -0.0055, 0.0068},
    {0.0780, -0.0040, 0.0022, -0.0072, 0.0075}, {0.0800, -0.0045, 0.0024, -0.0082, 0.0082},
    {0.0820, -0.0050, 0.0026, -0.0090, 0.0090}, {0.0840, -0.0052, 0.0027, -0.0095, 0.0095}};

boost::shared_ptr<const YieldCurve> FlatCurve(double rate) {
    return boost::make_shared<YieldCurve>(kReference, std::vector<Date>{Date(16, 11, 2027), Date(16, 11, 2036)},
                                          std::vector<double>{rate, rate}, Continuous,
                                          DayCounter(Act365Fixed));
}

FXVolConventions Uniform(int deltaType, int premiumAdjusted, int atmType) {
    FXVolConventions conventions;
    conventions.expiryDates = {kReference + Period("1Y")};
    conventions.deltaTypes = {deltaType};
    conventions.premiumAdjusted = {premiumAdjusted};
    conventions.atmTypes = {atmType};
    return conventions;
}

FXVolSurface Surface(int mode = SmileLinear, const FXVolConventions& conventions = {},
                     const std::vector<std::vector<double>>& quotes = kQuotes,
                     const std::vector<std::string>& labels = kLabels) {
    return FXVolSurface(kReference, kReference, kSpot, kTenors, labels, quotes, FlatCurve(kUsdRate),
                        FlatCurve(kEurRate), conventions, mode);
}

// Pillar volatilities as the strangle convention forms them from one row of quotes.
double QuotedPillar(const std::vector<double>& row, double delta) {
    if (delta == 0.0) return row[0];
    const bool wing10 = std::fabs(delta) < 0.2;
    const double rr = row[wing10 ? 3 : 1], bf = row[wing10 ? 4 : 2];
    return row[0] + bf + (delta > 0.0 ? 0.5 : -0.5) * rr;
}

// Case names for the listings: the mode's name, the label, the convention codes.
std::string ModeName(const ::testing::TestParamInfo<int>& info) {
    std::string name = SmileInterpolationToString(info.param);
    std::erase(name, ' ');  // code 19's leading blank
    return name;
}

// ---- labels -----------------------------------------------------------------------------------

struct LabelCase { const char* label; double value; };
class PillarLabels : public ::testing::TestWithParam<LabelCase> {};
TEST_P(PillarLabels, GiveTheirSignedDelta) {
    EXPECT_DOUBLE_EQ(FXVolSurface::DeltaStringToValue(GetParam().label), GetParam().value) << GetParam().label;
}
INSTANTIATE_TEST_SUITE_P(Known, PillarLabels,
                         ::testing::Values(LabelCase{"25P", -0.25}, LabelCase{"10C", 0.10},
                                           LabelCase{"ATMM", 0.0}, LabelCase{"ATM", 0.0},
                                           LabelCase{"5P", -0.05}, LabelCase{"02C", 0.02}),
                         [](const auto& info) { return testing::NameOf(info.param.label); });

class MalformedLabels : public ::testing::TestWithParam<const char*> {};
TEST_P(MalformedLabels, FailWithTheFormatMessage) {
    EXPECT_EQ(FailureText([&] { FXVolSurface::DeltaStringToValue(GetParam()); }),
              "Delta string wrong format!") << GetParam();
}
INSTANTIATE_TEST_SUITE_P(Bad, MalformedLabels,
                         ::testing::Values("-25C", "-25P", "0P", "P25", "C", "25RR", "X"),
                         [](const auto& info) { return testing::NameOf(info.param); });

struct QuoteLabelCase { std::vector<std::string> labels; const char* message; };
class QuoteLabelSets : public ::testing::TestWithParam<QuoteLabelCase> {};
TEST_P(QuoteLabelSets, AreRefusedWithTheirMessage) {
    EXPECT_EQ(FailureText([&] { FXVolSurface::processDeltaStrings(GetParam().labels); }),
              GetParam().message);
}
INSTANTIATE_TEST_SUITE_P(
    Bad, QuoteLabelSets,
    ::testing::Values(QuoteLabelCase{{"ATM", "25RR"}, "25BF/25RR is a must!"},
                      QuoteLabelCase{{"ATM", "25BF"}, "25BF/25RR is a must!"},
                      QuoteLabelCase{{"25RR", "25BF"}, "Not found ATM vol!"},
                      QuoteLabelCase{{"ATM", "25RR", "25BF", "25SS"}, "Unknown deltaString!"},
                      QuoteLabelCase{{"ATM", "25RR", "25BF", "15RR"}, "not valid RR/BF/SS delta!"}),
    [](const auto& info) {
        std::string name;
        for (const std::string& label : info.param.labels) name += (name.empty() ? "" : "_") + label;
        return name;
    });

TEST(QuoteLabels, KindFirstWithABlankReadsLikeNumberFirst) {
    const auto columns = FXVolSurface::processDeltaStrings({"RR 25", "ATM", "BF 25", "10 RR", "BF10"});
    EXPECT_EQ(columns.atm, 1);
    EXPECT_EQ(columns.riskReversals.at(25), 0);
    EXPECT_EQ(columns.butterflies.at(25), 2);
    EXPECT_EQ(columns.riskReversals.at(10), 3);
    EXPECT_EQ(columns.butterflies.at(10), 4);
}

TEST(SmileModes, HaveTheirNamesAndAnUnknownCodeItsOddMessage) {
    EXPECT_EQ(SmileInterpolationToString(0), "LINEAR");
    EXPECT_EQ(SmileInterpolationToString(4), "SABR");
    EXPECT_EQ(SmileInterpolationToString(19), " Q_VARIANCE_EXTENDED_SPLINE");
    EXPECT_EQ(SmileInterpolationToString(20), "Q_MUREX_LOG_MONEYNESS");
    EXPECT_EQ(FailureText([] { SmileInterpolationToString(7); }),
              "Extrapolation method is an invalid enumeration: 7");
    EXPECT_EQ(stringToSmileInterpolation("q_variance_extended_spline"), SmileVarianceExtendedSpline);
    EXPECT_EQ(stringToSmileInterpolation("2"), SmileCubicSpline);
}

// ---- construction failures ----------------------------------------------------------------------

TEST(SurfaceConstruction, RefusesBadInputWithItsMessage) {
    const auto usd = FlatCurve(kUsdRate), eur = FlatCurve(kEurRate);
    const std::vector<Date> dates{kReference + Period("1M"), kReference + Period("3M")};
    const auto rows = [](std::size_t n) { return std::vector<std::vector<double>>(kQuotes.begin(), kQuotes.begin() + n); };
    auto withRow = [](std::size_t row, std::size_t column, double value) {
        auto quotes = kQuotes;
        quotes[row][column] = value;
        return quotes;
    };
    const std::vector<std::pair<std::function<void()>, std::string>> cases{
        {[&] { FXVolSurface(kReference, kReference, 0.0, kTenors, kLabels, kQuotes, usd, eur); },
         "MktVolSurface: no spot price!"},
        {[&] { FXVolSurface(kReference, kReference - 1, kSpot, kTenors, kLabels, kQuotes, usd, eur); },
         "Spot Date should be later than Reference Date!"},
        {[&] { FXVolSurface(kReference, kReference, kSpot, kTenors, kLabels, rows(5), usd, eur); },
         "Tenors/Volatilities not same size!"},
        {[&] { FXVolSurface(kReference, kReference, kSpot, dates, kLabels, rows(3), usd, eur); },
         "MaturityDates/Volatilities not same size!"},
        {[&] { FXVolSurface(kReference, kReference, kSpot, dates, {"ATM", "25RR", "25BF"}, rows(2), usd, eur); },
         "DeltaStrings/Tenors/Volatilities size not match!"},
        {[&] { FXVolSurface(kReference, kReference, kSpot, std::vector<Date>{}, kLabels, {}, usd, eur); },
         "Check input data size!"},
        {[&] { FXVolSurface::FromPillars(kReference, kReference, kSpot, dates, {"25P", "ATMM", "25C"}, {{0.1, 0.1, 0.1}}, usd, eur); },
         "term size not same with vols!"},
        {[&] { FXVolSurface::FromPillars(kReference, kReference, kSpot, dates, {"25P", "ATMM", "25C"}, {{0.1, 0.1}, {0.1, 0.1}}, usd, eur); },
         "delta size not same with vols!"},
        {[&] { FXVolSurface::FromPillars(kReference, kReference, kSpot, dates, {"10P", "ATMM", "25C"}, {{0.1, 0.1, 0.1}, {0.1, 0.1, 0.1}}, usd, eur); },
         "25C/25P is a must!"},
        {[&] { Surface(SmileVannaVolga); }, "No support for VannaVolga!"},
        {[&] { Surface(7); }, "Wrong type smile interpolation!"},
        {[&] { FXVolSurface(kReference, kReference, kSpot, kTenors, kLabels, kQuotes, usd, eur, {}, SmileSVI, {0.1, 0.2}); },
         "Wrong InitialGuess, SVI need 5 params!"},
        {[&] { FXVolSurface(kReference, kReference, kSpot, kTenors, kLabels, kQuotes, usd, eur, {}, SmileSABR, {0.1}); },
         "Invalid params size in SABR interpolation."},
        {[&] { Surface(SmileLinear, Uniform(SpotDelta, 2, ATMForward)); }, "unknown pa/deltatype/atmtype!"},
        {[&] {
             FXVolConventions conventions = Uniform(SpotDelta, 0, ATMForward);
             conventions.atmTypes.push_back(ATMSpot);
             Surface(SmileLinear, conventions);
         },
         "Expiry dates and delta types must be of the same size and not empty."},
        {[&] {
             FXVolConventions conventions;
             conventions.wingTenors = {Period("1M")};
             conventions.putWingRatios = {0.5};
             Surface(SmileLinear, conventions);
         },
         "Put/Call Wing Ratios/tenors size not match!"},
        {[&] { FXVolSurface(kReference, kReference, kSpot, kTenors, kLabels, kQuotes, nullptr, eur); },
         "Domestic YieldCurve is Null!"},
    };
    for (const auto& [action, message] : cases) EXPECT_EQ(FailureText(action), message);
}

struct BadQuoteCase { std::size_t row, column; double value; const char* fragment; };
class BadQuotes : public ::testing::TestWithParam<BadQuoteCase> {};
TEST_P(BadQuotes, NameTheOffendingQuote) {
    auto quotes = kQuotes;
    quotes[GetParam().row][GetParam().column] = GetParam().value;
    const std::string text = FailureText([&] { Surface(SmileLinear, {}, quotes); });
    EXPECT_NE(text.find(GetParam().fragment), std::string::npos) << text;
}
INSTANTIATE_TEST_SUITE_P(
    Bad, BadQuotes,
    ::testing::Values(BadQuoteCase{1, 0, -0.05, "'ATM' of expiry '16/12/2026' must be positive"},
                      BadQuoteCase{2, 2, std::numeric_limits<double>::quiet_NaN(),
                                   "Volatility quote '25BF' of expiry '16/02/2027' is not a number."},
                      BadQuoteCase{0, 4, -0.08, "'10P' of expiry '23/11/2026' must be positive"},
                      BadQuoteCase{0, 4, -0.05, "Pillar strikes of expiry '23/11/2026' do not rise"}),
    [](const auto& info) {
        return "Row" + std::to_string(info.param.row) + "_Column" + std::to_string(info.param.column) + "_" +
               testing::NameOf(info.param.value);
    });

TEST(SurfaceConstruction, RefusesExpiriesThatDoNotRise) {
    const std::vector<Date> dates{kReference + Period("3M"), kReference + Period("1M")};
    const std::string text = FailureText([&] {
        FXVolSurface(kReference, kReference, kSpot, dates, kLabels, {kQuotes[0], kQuotes[1]},
                     FlatCurve(kUsdRate), FlatCurve(kEurRate));
    });
    EXPECT_EQ(text, "Expiries must be strictly increasing: '16/12/2026' does not come after '16/02/2027'.");
}

TEST(SurfaceConstruction, BuildsFromAtmAndTheTwentyFivesAlone) {
    const std::vector<std::vector<double>> quotes{{0.075, -0.003, 0.002}, {0.080, -0.004, 0.0025}};
    const FXVolSurface surface(kReference, kReference, kSpot, {Period("1M"), Period("1Y")},
                               {"ATM", "25RR", "25BF"}, quotes, FlatCurve(kUsdRate), FlatCurve(kEurRate));
    EXPECT_EQ(surface.PillarDeltas(0), (std::vector<double>{-0.25, 0.0, 0.25}));
    EXPECT_DOUBLE_EQ(surface.GetATMVol(kReference + Period("1Y")), 0.080);
}

// ---- the wing extension -------------------------------------------------------------------------

TEST(WingExtension, RunsFromTheTwentyFiveToTheTenDeltaVolatility) {
    const std::vector<double> deltas{-0.10, -0.25, 0.0, 0.25, 0.10};
    const std::vector<double> vols{0.11, 0.09, 0.08, 0.085, 0.10};
    EXPECT_DOUBLE_EQ(FXVolSurface::ExtendWing(deltas, vols, 0.0, true), 0.085);
    EXPECT_DOUBLE_EQ(FXVolSurface::ExtendWing(deltas, vols, 1.0, true), 0.10);
    EXPECT_DOUBLE_EQ(FXVolSurface::ExtendWing(deltas, vols, 0.5, false), 0.10);
    EXPECT_THROW(FXVolSurface::ExtendWing({0.2500001, 0.10}, {0.1, 0.1}, 0.5, true), std::runtime_error);
    EXPECT_THROW(FXVolSurface::ExtendWing(deltas, {0.1}, 0.5, true), std::invalid_argument);
    EXPECT_THROW(FXVolSurface::ExtendWing({}, {}, 0.5, true), std::invalid_argument);
    EXPECT_EQ(FailureText([] { FXVolSurface::ExtendWing({0.2500001, 0.10}, {0.1, 0.1}, 0.5, true); }),
              "Required delta values (25d or 10d) not found!");
}

TEST(WingExtension, RatiosPullTheTenDeltaPillarsOfTheClosestTenor) {
    FXVolConventions conventions;
    conventions.wingTenors = {Period("1M"), Period("1Y")};
    conventions.putWingRatios = {0.5, 1.0};
    conventions.callWingRatios = {0.0, 1.0};
    const FXVolSurface surface = Surface(SmileLinear, conventions);
    // 1M row: 10P pulled halfway towards 25P, 10C onto 25C.
    const auto& vols = surface.PillarVolatilities(1);
    const double put25 = QuotedPillar(kQuotes[1], -0.25), put10 = QuotedPillar(kQuotes[1], -0.10);
    EXPECT_NEAR(vols.front(), put25 + 0.5 * (put10 - put25), 1e-15);
    EXPECT_NEAR(vols.back(), QuotedPillar(kQuotes[1], 0.25), 1e-15);
    EXPECT_DOUBLE_EQ(surface.findClosestWingRatio(kReference + Period("9M"), true), 1.0);
}

// ---- conventions --------------------------------------------------------------------------------

TEST(Conventions, AreReadFromTheClosestListedExpiry) {
    FXVolConventions conventions;
    conventions.expiryDates = {kReference + Period("1M"), kReference + Period("2Y")};
    conventions.deltaTypes = {SpotDelta, ForwardDelta};
    conventions.premiumAdjusted = {PremiumIncluded, PremiumExcluded};
    conventions.atmTypes = {ATMDeltaNeutral, ATMForward};
    const FXVolSurface surface = Surface(SmileLinear, conventions);
    EXPECT_EQ(surface.findClosestDeltaType(kReference + Period("6M")), SpotDelta);
    EXPECT_EQ(surface.findClosestDeltaType(kReference + Period("18M")), ForwardDelta);
    EXPECT_EQ(surface.findClosestPremiumAdjusted(kReference + Period("3M")), PremiumIncluded);
    EXPECT_EQ(surface.findClosestATMVolType(kReference + Period("5Y")), ATMForward);
    // The 2Y ATM pillar sits at the forward.
    EXPECT_DOUBLE_EQ(surface.PillarStrikes(5)[2], surface.Forward(surface.ExpiryTimes()[5]));
}

// ---- pillars and smile modes --------------------------------------------------------------------

class InterpolatingModes : public ::testing::TestWithParam<int> {};
TEST_P(InterpolatingModes, ReproduceEveryPillarVolatilityAtItsStrike) {
    const FXVolSurface surface = Surface(GetParam());
    for (std::size_t i = 0; i < kTenors.size(); ++i) {
        const Date expiry = kReference + kTenors[i];
        for (std::size_t k = 0; k < surface.PillarDeltas(i).size(); ++k) {
            const double delta = surface.PillarDeltas(i)[k];
            EXPECT_NEAR(surface.GetVolatility(expiry, surface.PillarStrikes(i)[k]),
                        QuotedPillar(kQuotes[i], delta), 1e-12)
                << SmileInterpolationToString(GetParam()) << " " << kTenors[i].Text() << " delta " << delta;
        }
    }
}
INSTANTIATE_TEST_SUITE_P(Modes, InterpolatingModes,
                         ::testing::Values(SmileLinear, SmileCubicSpline, SmileVarianceOnLogMoneyness,
                                           SmileStrikeNaturalSpline, SmileStrikeExtendedSpline,
                                           SmileVarianceExtendedSpline, SmileMurexLogMoneyness,
                                           SmileOriginalLum, SmileForwardDeltaNaturalSpline,
                                           SmileModifiedLum, SmileForwardDeltaImplicitSpline,
                                           SmileInvertedSurface, SmileInvertedSurfaceLogMoneyness),
                         ModeName);

class FittedModes : public ::testing::TestWithParam<int> {};
TEST_P(FittedModes, HitThePillarsWithinFiveHundredthsOfAVolPoint) {
    const FXVolSurface surface = Surface(GetParam());
    for (std::size_t i = 0; i < kTenors.size(); ++i)
        for (std::size_t k = 0; k < surface.PillarDeltas(i).size(); ++k)
            EXPECT_NEAR(surface.GetVolatility(kReference + kTenors[i], surface.PillarStrikes(i)[k]),
                        QuotedPillar(kQuotes[i], surface.PillarDeltas(i)[k]), 0.0005)
                << SmileInterpolationToString(GetParam()) << " " << kTenors[i].Text() << " pillar " << k;
}
INSTANTIATE_TEST_SUITE_P(Modes, FittedModes, ::testing::Values(SmileSVI, SmileSABR), ModeName);

TEST(Smile, FittedParametersAreValidSviAndSabr) {
    const auto svi = Surface(SmileSVI).FittedParameters(3);
    ASSERT_EQ(svi.size(), 5u);
    EXPECT_GE(svi[1], 0.0);
    EXPECT_LT(std::fabs(svi[2]), 1.0);
    const auto sabr = Surface(SmileSABR).FittedParameters(3);
    ASSERT_EQ(sabr.size(), 4u);
    EXPECT_DOUBLE_EQ(sabr[1], 1.0);
    EXPECT_LT(sabr[2], 0.0);  // a put skew (negative risk reversals) asks for negative correlation
}

TEST(Smile, TotalVarianceIsLinearInTimeAtFixedMoneyness) {
    const FXVolSurface surface = Surface(SmileCubicSpline);
    const auto times = surface.ExpiryTimes();
    for (double x : {-0.05, -0.01, 0.0, 0.02, 0.06}) {
        const double t = 0.3 * times[2] + 0.7 * times[3];
        const double vol = surface.GetVolatility(t, surface.Forward(t) * std::exp(x));
        const double left = surface.GetVolatility(times[2], surface.Forward(times[2]) * std::exp(x));
        const double right = surface.GetVolatility(times[3], surface.Forward(times[3]) * std::exp(x));
        EXPECT_NEAR(vol * vol * t, 0.3 * left * left * times[2] + 0.7 * right * right * times[3], 1e-15) << x;
        // Beyond the last expiry and before the first: flat in volatility at the same moneyness.
        const double late = 5.0, early = 1.0 / 365.0;
        EXPECT_NEAR(surface.GetVolatility(late, surface.Forward(late) * std::exp(x)),
                    surface.GetVolatility(times.back(), surface.Forward(times.back()) * std::exp(x)), 1e-14);
        EXPECT_NEAR(surface.GetVolatility(early, surface.Forward(early) * std::exp(x)),
                    surface.GetVolatility(times.front(), surface.Forward(times.front()) * std::exp(x)), 1e-14);
    }
}

// Between the pillars every mode stays within the range its two neighbouring pillars span, up
// to the overshoot a spline or a fit may take.
class AllModes : public ::testing::TestWithParam<int> {};
TEST_P(AllModes, StayNearTheNeighbouringPillars) {
    const FXVolSurface surface = Surface(GetParam());
    const auto& strikes = surface.PillarStrikes(3);
    const auto& vols = surface.PillarVolatilities(3);
    const double t = surface.ExpiryTimes()[3];
    for (std::size_t k = 0; k + 1 < strikes.size(); ++k) {
        const double mid = surface.GetVolatility(t, 0.5 * (strikes[k] + strikes[k + 1]));
        EXPECT_GT(mid, std::min(vols[k], vols[k + 1]) - 0.002) << SmileInterpolationToString(GetParam()) << " " << k;
        EXPECT_LT(mid, std::max(vols[k], vols[k + 1]) + 0.002) << SmileInterpolationToString(GetParam()) << " " << k;
    }
}
INSTANTIATE_TEST_SUITE_P(Modes, AllModes,
                         ::testing::Values(SmileLinear, SmileSVI, SmileCubicSpline, SmileSABR,
                                           SmileVarianceOnLogMoneyness, SmileOriginalLum,
                                           SmileForwardDeltaNaturalSpline, SmileModifiedLum,
                                           SmileForwardDeltaImplicitSpline, SmileStrikeNaturalSpline,
                                           SmileInvertedSurfaceLogMoneyness, SmileInvertedSurface,
                                           SmileStrikeExtendedSpline, SmileVarianceExtendedSpline,
                                           SmileMurexLogMoneyness),
                         ModeName);

TEST(Smile, FlatBeyondTheOuterDeltas) {
    const FXVolSurface surface = Surface(SmileLinear);
    const Date expiry = kReference + Period("3M");
    EXPECT_DOUBLE_EQ(surface.GetVolatility(expiry, 0.5), QuotedPillar(kQuotes[2], -0.10));
    EXPECT_DOUBLE_EQ(surface.GetVolatility(expiry, 2.0), QuotedPillar(kQuotes[2], 0.10));
}

TEST(Smile, RefusesStrikesAtOrBelowZero) {
    const FXVolSurface surface = Surface();
    for (double strike : {0.0, -1.0})
        EXPECT_EQ(FailureText([&] { surface.GetVolatility(0.5, strike); }).rfind("Strike must be positive", 0), 0u);
}

TEST(Smile, PillarFormReadsLikeTheMarketForm) {
    std::vector<std::vector<double>> pillars;
    std::vector<Date> dates;
    for (std::size_t i = 0; i < kTenors.size(); ++i) {
        dates.push_back(kReference + kTenors[i]);
        pillars.push_back({QuotedPillar(kQuotes[i], -0.10), QuotedPillar(kQuotes[i], 0.25), kQuotes[i][0],
                           QuotedPillar(kQuotes[i], -0.25), QuotedPillar(kQuotes[i], 0.10)});
    }
    const auto fromPillars = FXVolSurface::FromPillars(kReference, kReference, kSpot, dates,
                                                       {"10P", "25C", "ATMM", "25P", "10C"}, pillars,
                                                       FlatCurve(kUsdRate), FlatCurve(kEurRate), {}, SmileCubicSpline);
    const FXVolSurface fromQuotes = Surface(SmileCubicSpline);
    for (double t : {0.05, 0.4, 1.5})
        for (double strike : {0.95, 1.05, 1.1, 1.2})
            EXPECT_NEAR(fromPillars->GetVolatility(t, strike), fromQuotes.GetVolatility(t, strike), 1e-14);
    const auto noAtm = FXVolSurface::FromPillars(kReference, kReference, kSpot, {dates[0]}, {"25P", "25C"},
                                                 {{0.08, 0.075}}, FlatCurve(kUsdRate), FlatCurve(kEurRate));
    EXPECT_EQ(FailureText([&] { noAtm->GetATMVol(0.5); }), "Not found atm vol!");
}

// ---- strikes from deltas ------------------------------------------------------------------------

struct ConventionCase { int deltaType, premiumAdjusted, atmType; };
std::string ConventionName(const ::testing::TestParamInfo<ConventionCase>& info) {
    static const char* const deltas[] = {"Spot", "Forward"};
    static const char* const premiums[] = {"Plain", "PremiumAdjusted"};
    static const char* const atms[] = {"AtmForward", "AtmDeltaNeutral", "AtmSpot"};
    return std::string(deltas[info.param.deltaType]) + "_" + premiums[info.param.premiumAdjusted] + "_" +
           atms[info.param.atmType];
}
class DeltaConventions : public ::testing::TestWithParam<ConventionCase> {};

// The delta the vanilla engine gives the strike at the surface's own volatility there.
double VanillaDelta(const FXVolSurface& surface, const Date& expiry, double strike, bool isCall,
                    int deltaType, int premiumAdjusted) {
    const double t = surface.TimeToExpiry(expiry);
    BSVanilla option(isCall ? BSVanilla::Call : BSVanilla::Put, strike, surface.GetVolatility(t, strike), t, t,
                     kUsdRate, kEurRate, kSpot);
    const bool plain = premiumAdjusted == PremiumExcluded;
    return deltaType == SpotDelta ? option.Delta(plain) : option.ForwardDelta(plain);
}

TEST_P(DeltaConventions, StrikesRoundTripThroughTheVanillaDelta) {
    const auto c = GetParam();
    const FXVolSurface surface = Surface(SmileCubicSpline, Uniform(c.deltaType, c.premiumAdjusted, c.atmType));
    std::vector<Date> expiries;
    for (const Period& tenor : kTenors) expiries.push_back(kReference + tenor);
    expiries.push_back(kReference + Period("4M"));  // between pillars
    for (const Date& expiry : expiries)
        for (const char* label : {"10P", "25P", "15P", "25C", "10C", "35C"}) {
            const double delta = FXVolSurface::DeltaStringToValue(label);
            const double strike = surface.GetStrike(expiry, label);
            EXPECT_NEAR(VanillaDelta(surface, expiry, strike, delta > 0.0, c.deltaType, c.premiumAdjusted),
                        delta, 1e-10) << label << " " << expiry;
        }
}

TEST_P(DeltaConventions, AtTheMoneyStrikeMeetsItsDefinition) {
    const auto c = GetParam();
    const FXVolSurface surface = Surface(SmileCubicSpline, Uniform(c.deltaType, c.premiumAdjusted, c.atmType));
    for (const char* tenor : {"1M", "1Y", "7M"}) {
        const Date expiry = kReference + Period(tenor);
        const double strike = surface.GetStrike(expiry, "ATM");
        const double t = surface.TimeToExpiry(expiry);
        if (c.atmType == ATMForward) EXPECT_NEAR(strike, kSpot * std::exp((kUsdRate - kEurRate) * t), 1e-14);
        if (c.atmType == ATMSpot) EXPECT_DOUBLE_EQ(strike, kSpot);
        if (c.atmType == ATMDeltaNeutral)
            EXPECT_NEAR(VanillaDelta(surface, expiry, strike, true, c.deltaType, c.premiumAdjusted) +
                            VanillaDelta(surface, expiry, strike, false, c.deltaType, c.premiumAdjusted),
                        0.0, 1e-12) << tenor;
    }
}

TEST_P(DeltaConventions, TwentyFiveDeltaRiskReversalAndButterflyGiveBackTheQuotes) {
    const auto c = GetParam();
    const FXVolSurface surface = Surface(SmileLinear, Uniform(c.deltaType, c.premiumAdjusted, c.atmType));
    for (std::size_t i = 0; i < kTenors.size(); ++i) {
        const Date expiry = kReference + kTenors[i];
        const double call = surface.GetVolatility(expiry, surface.GetStrike(expiry, "25C"));
        const double put = surface.GetVolatility(expiry, surface.GetStrike(expiry, "25P"));
        EXPECT_NEAR(call - put, kQuotes[i][1], 1e-12) << kTenors[i].Text();
        EXPECT_NEAR(0.5 * (call + put) - surface.GetATMVol(expiry), kQuotes[i][2], 1e-12) << kTenors[i].Text();
    }
}

INSTANTIATE_TEST_SUITE_P(
    All, DeltaConventions,
    ::testing::Values(ConventionCase{SpotDelta, PremiumExcluded, ATMDeltaNeutral},
                      ConventionCase{SpotDelta, PremiumIncluded, ATMDeltaNeutral},
                      ConventionCase{ForwardDelta, PremiumExcluded, ATMDeltaNeutral},
                      ConventionCase{ForwardDelta, PremiumIncluded, ATMDeltaNeutral},
                      ConventionCase{SpotDelta, PremiumExcluded, ATMForward},
                      ConventionCase{ForwardDelta, PremiumIncluded, ATMSpot}),
    ConventionName);

// An independent reference for pillar strikes with a spot lag and sloping curves: the forward and
// the spot-date discounting spelled out here, each delta inverted by plain bisection on the
// textbook delta formula.
double ReferenceStrike(double delta, double vol, double t, double forward, double foreignDiscount,
                       bool spotDelta, bool premiumAdjusted) {
    const double phi = delta > 0.0 ? 1.0 : -1.0;
    const auto deltaAt = [&](double strike) {
        const double sd = vol * std::sqrt(t);
        const double d1 = (std::log(forward / strike) + 0.5 * sd * sd) / sd;
        const double fwd = premiumAdjusted ? phi * strike / forward * NormalCdf(phi * (d1 - sd))
                                           : phi * NormalCdf(phi * d1);
        return spotDelta ? foreignDiscount * fwd : fwd;
    };
    // Premium-adjusted call deltas peak below the forward; the quoted strike lies above the peak.
    double low = premiumAdjusted && phi > 0.0 ? forward * 0.999 : forward * 0.3;
    double high = forward * 3.0;
    if (premiumAdjusted && phi > 0.0)
        while (deltaAt(low * 0.999) > deltaAt(low)) low *= 0.999;
    for (int i = 0; i < 200; ++i) {
        const double mid = 0.5 * (low + high);
        if ((deltaAt(mid) - delta) * (deltaAt(low) - delta) > 0.0) low = mid; else high = mid;
    }
    return 0.5 * (low + high);
}

TEST(PillarStrikes, AgreeWithAnIndependentDeltaCalculation) {
    const Date spotDate = kReference + 2;
    const auto usd = boost::make_shared<YieldCurve>(kReference, std::vector<Date>{Date(16, 2, 2027), Date(16, 11, 2028)},
                                                    std::vector<double>{0.041, 0.037}, Continuous, DayCounter(Act365Fixed));
    const auto eur = boost::make_shared<YieldCurve>(kReference, std::vector<Date>{Date(16, 2, 2027), Date(16, 11, 2028)},
                                                    std::vector<double>{0.024, 0.022}, Continuous, DayCounter(Act365Fixed));
    for (int premium : {PremiumExcluded, PremiumIncluded})
        for (int deltaType : {SpotDelta, ForwardDelta}) {
            const FXVolSurface surface(kReference, spotDate, kSpot, kTenors, kLabels, kQuotes, usd, eur,
                                       Uniform(deltaType, premium, ATMDeltaNeutral));
            const double ts = 2.0 / 365.0;
            for (std::size_t i = 0; i < kTenors.size(); ++i) {
                const Date expiry = kReference + kTenors[i];
                const double t = (expiry.SerialNumber() - kReference.SerialNumber()) / 365.0;
                const double dff = eur->DiscountFactor(t) / eur->DiscountFactor(ts);
                const double forward = kSpot * dff / (usd->DiscountFactor(t) / usd->DiscountFactor(ts));
                for (std::size_t k = 0; k < surface.PillarDeltas(i).size(); ++k) {
                    const double delta = surface.PillarDeltas(i)[k];
                    const double vol = QuotedPillar(kQuotes[i], delta);
                    const double expected =
                        delta == 0.0 ? forward * std::exp((premium ? -0.5 : 0.5) * vol * vol * t)
                                     : ReferenceStrike(delta, vol, t, forward, dff, deltaType == SpotDelta, premium);
                    EXPECT_NEAR(surface.PillarStrikes(i)[k], expected, 1e-11 * expected)
                        << kTenors[i].Text() << " delta " << delta << " premium " << premium << " type " << deltaType;
                }
            }
        }
}

TEST(GetStrike, RefusesLabelsThatAreNotDeltas) {
    const FXVolSurface surface = Surface();
    EXPECT_EQ(FailureText([&] { surface.GetStrike(kReference + Period("1M"), "25RR"); }),
              "DeltaString not suport in GetStrike!");
    EXPECT_EQ(FailureText([&] { surface.GetStrike(kReference + Period("1M"), 0.25, 3, 0, 0); }),
              "unknown pa/deltatype/atmtype!");
}

// ---- arbitrage ------------------------------------------------------------------------------------

TEST(Arbitrage, ARealisticMarketIsClean) {
    for (int mode : {SmileLinear, SmileCubicSpline, SmileSVI, SmileSABR})
        EXPECT_TRUE(Surface(mode).ArbitrageReport().empty()) << SmileInterpolationToString(mode);
}

TEST(Arbitrage, NegativeButterflyAndFallingVarianceBuildButAreReported) {
    auto quotes = kQuotes;
    quotes[2][2] = -0.012;  // 3M: 25-delta wings well below ATM, a concave smile
    quotes[2][4] = -0.004;
    quotes[4][0] = 0.050;   // 1Y ATM so low that total variance falls from 6M
    const FXVolSurface surface = Surface(SmileLinear, {}, quotes);
    const auto report = surface.ArbitrageReport();
    bool butterfly3M = false, calendar1Y = false;
    for (const auto& violation : report) {
        butterfly3M |= violation.kind == "butterfly" && violation.expiry == kReference + Period("3M");
        calendar1Y |= violation.kind == "calendar" && violation.expiry == kReference + Period("1Y");
        EXPECT_GT(violation.size, 0.0);
    }
    EXPECT_TRUE(butterfly3M);
    EXPECT_TRUE(calendar1Y);
    // The 3M kink sits at the ATM pillar, where the linear smile turns from rising to falling.
    for (const auto& violation : report)
        if (violation.kind == "butterfly" && violation.expiry == kReference + Period("3M"))
            EXPECT_NEAR(violation.strike, surface.PillarStrikes(2)[2], 0.01);
}

// ---- options on the surface ---------------------------------------------------------------------

VanillaOption::Terms CallTerms(double strike) {
    VanillaOption::Terms terms;
    terms.callPut = BSVanilla::Call;
    terms.strike = strike;
    terms.referenceDate = kReference;
    terms.expiryDate = terms.settlementDate = terms.deliveryDate = kReference + Period("5M");
    return terms;
}

TEST(OptionOnSurface, ReadsItsVolatilityAtItsStrikeAndExpiry) {
    const auto surface = boost::make_shared<FXVolSurface>(Surface(SmileCubicSpline));
    const auto carry = VanillaOption::Carry::Curves(FlatCurve(kUsdRate), FlatCurve(kEurRate));
    for (double strike : {1.02, 1.09, 1.15}) {
        VanillaOption onSurface(CallTerms(strike), kSpot, carry, surface);
        const double vol = surface->GetVolatility(kReference + Period("5M"), strike);
        VanillaOption onFlat(CallTerms(strike), kSpot, carry, boost::make_shared<FlatVolatility>(vol));
        EXPECT_DOUBLE_EQ(onSurface.GetVol(), vol);
        EXPECT_DOUBLE_EQ(onSurface.Price(), onFlat.Price());
    }
}

TEST(OptionOnSurface, StrikeFromPriceIsSolvedOnTheSmile) {
    const auto surface = boost::make_shared<FXVolSurface>(Surface(SmileCubicSpline));
    const auto carry = VanillaOption::Carry::Curves(FlatCurve(kUsdRate), FlatCurve(kEurRate));
    for (double strike : {1.0, 1.08, 1.16}) {
        const double premium = VanillaOption(CallTerms(strike), kSpot, carry, surface).Price();
        VanillaOption elsewhere(CallTerms(1.1), kSpot, carry, surface);
        EXPECT_NEAR(elsewhere.StrikeImpliedFromPrice(premium), strike, 1e-9) << strike;
        EXPECT_NEAR(elsewhere.FuncFor_StrikeImpliedFromPrice(strike, premium), 0.0, 1e-15);
    }
    VanillaOption flat(CallTerms(1.1), kSpot, carry, boost::make_shared<FlatVolatility>(0.08));
    EXPECT_EQ(FailureText([&] { flat.FuncFor_StrikeImpliedFromPrice(1.1, 0.01); }), "Support FXVolSurface only!");
}

}  // namespace
}  // namespace zep
