#include <gtest/gtest.h>

#include <cmath>
#include <functional>
#include <memory>

#include "lum-monte-carlo/XScriptStructure.hpp"
#include "lum-monte-carlo/products/AsianPayoff.hpp"
#include "lum-monte-carlo/products/AutoCall.hpp"
#include "lum-monte-carlo/products/CashFlows.hpp"
#include "lum-monte-carlo/products/Snowball.hpp"
#include "lum-monte-carlo/products/TargetRedemptionForward.hpp"
#include "lum-monte-carlo/script/Parser.hpp"
#include "lum-monte-carlo/script/ScriptPrinter.hpp"

namespace zep {
namespace {

const Date kToday(2, 1, 2024);
constexpr double kR1 = 0.03, kR2 = 0.01, kVol = 0.2, kSpot = 100.0;

double N(double x) { return 0.5 * std::erfc(-x / std::sqrt(2.0)); }
double YearsTo(const Date& d) { return (d.SerialNumber() - kToday.SerialNumber()) / 365.0; }

// Black-Scholes call on the geometric average of the fixings, paid at the last one: log G is
// normal with the mean and variance of the average of the correlated log spots. One fixing is
// the vanilla call.
double GeometricAsianCall(double strike, const std::vector<Date>& fixings) {
    const double n = static_cast<double>(fixings.size());
    double mean = std::log(kSpot), variance = 0.0;
    for (const Date& a : fixings) {
        mean += (kR1 - kR2 - kVol * kVol / 2) * YearsTo(a) / n;
        for (const Date& b : fixings) variance += kVol * kVol * std::min(YearsTo(a), YearsTo(b)) / (n * n);
    }
    const double sd = std::sqrt(variance);
    const double d1 = (mean - std::log(strike) + variance) / sd;
    return std::exp(-kR1 * YearsTo(fixings.back())) * (std::exp(mean + variance / 2) * N(d1) - strike * N(d1 - sd));
}

XScriptInputs Market(std::int64_t paths = 20000) {
    XScriptInputs in;
    in.today = kToday;
    in.spot = kSpot;
    in.volatility = kVol;
    in.rate1 = kR1;
    in.rate2 = kR2;
    in.numSimulations = paths;
    in.seed = 4242;
    return in;
}

struct Estimate {
    double mean, error;
};
Estimate Priced(const XScriptInputs& in) {
    const XScriptStructure product(in);
    return {product.Price(), product.PriceStandardError()};
}

std::string FailureOf(const std::function<void()>& build) {
    try {
        build();
    } catch (const std::exception& e) {
        return e.what();
    }
    return "";
}

std::vector<Date> Monthly(std::size_t count, const Date& from = kToday) {
    std::vector<Date> dates;
    for (std::size_t i = 1; i <= count; ++i) dates.push_back(from.Advance(static_cast<std::int32_t>(i), Months));
    return dates;
}

AutoCallTerms NoteTerms() {
    AutoCallTerms t;
    t.initialLevel = kSpot;
    t.strikeDate = kToday;
    t.observationDates = Monthly(6);
    t.autocallLevels = {1.0, 1.0, 0.98, 0.96, 0.94, 0.92};
    t.coupons = {0.01};
    t.couponBarrier = 0.8;
    t.memory = true;
    t.knockIn = {0.6, "discrete"};
    return t;
}

TargetRedemptionForwardTerms ForwardTerms() {
    TargetRedemptionForwardTerms t;
    t.fixingDates = Monthly(12);
    t.strike = 101.0;
    t.targetAmount = 1e9;  // beyond any path
    return t;
}

AsianPayoffTerms AsianTerms(std::size_t fixings, const std::string& average) {
    AsianPayoffTerms t;
    t.fixingDates = Monthly(fixings);
    t.average = average;
    t.strike = 100.0;
    return t;
}

std::vector<std::shared_ptr<StructuredProduct>> EveryFamily() {
    AutoCallTerms continuous = NoteTerms();
    continuous.knockIn.monitoring = "continuous";
    continuous.memory = false;
    SnowballTerms snowball{kSpot, kToday, Monthly(12), {1.03}, 0.12, {0.7, "continuous"}};
    TargetRedemptionForwardTerms byCount = ForwardTerms();
    byCount.targetAmount = 0.0;
    byCount.targetCount = 4;
    byCount.pivot = 99.0;
    byCount.leverage = 2.0;
    TargetRedemptionForwardTerms partial = ForwardTerms();
    partial.targetAmount = 5.0;
    partial.lastGain = "partial";
    AsianPayoffTerms floating = AsianTerms(6, "geometric");
    floating.averaged = "strike";
    floating.optionType = "put";
    return {std::make_shared<AutoCall>(NoteTerms()), std::make_shared<AutoCall>(continuous),
            std::make_shared<Snowball>(snowball), std::make_shared<TargetRedemptionForward>(byCount, kToday),
            std::make_shared<TargetRedemptionForward>(partial, kToday),
            std::make_shared<AsianPayoff>(AsianTerms(12, "arithmetic")), std::make_shared<AsianPayoff>(floating)};
}

TEST(StructuredProducts, GeneratedScriptsPrintBackToTheirText) {
    for (const auto& product : EveryFamily())
        for (const ProductEvent& event : product->Events())
            EXPECT_EQ(PrintScript(ParseScript(event.code)), event.code) << product->TypeName() << " " << event.date;
}

TEST(StructuredProducts, ScriptListsEveryEventUnderItsComment) {
    const AutoCall note(NoteTerms());
    const std::string script = note.Script();
    EXPECT_EQ(script.rfind("# AutoCall\n", 0), 0u);
    EXPECT_NE(script.find("observation 6 of 6: coupon 0.01 at or above 0.8 (with memory), autocall at or above 0.92"),
              std::string::npos);
    EXPECT_NE(script.find("PAYOFF PAYS ALIVE * MIN(PERF / 1, 1)"), std::string::npos);
}

// Never called, never knocked in: the note is a zero-coupon bond plus its fixed coupons.
TEST(StructuredProducts, AutoCallThatCannotBeCalledIsABond) {
    AutoCallTerms t = NoteTerms();
    t.autocallLevels = {1e6};
    t.couponBarrier = 0.0;
    t.knockIn.barrier = 0.0;
    t.coupons = {0.0, 0.01, 0.0, 0.02, 0.0, 0.03};
    double expected = std::exp(-kR1 * YearsTo(t.observationDates.back()));
    for (std::size_t i = 0; i < t.coupons.size(); ++i) expected += t.coupons[i] * std::exp(-kR1 * YearsTo(t.observationDates[i]));
    EXPECT_NEAR(Priced(AutoCall(t).Inputs(Market(500))).mean, expected, 1e-12);
}

TEST(StructuredProducts, CashFlowsOfTheBondAreItsDiscountedCoupons) {
    AutoCallTerms t = NoteTerms();
    t.autocallLevels = {1e6};
    t.couponBarrier = 0.0;
    t.knockIn.barrier = 0.0;
    t.coupons = {0.0, 0.01, 0.0, 0.02, 0.0, 0.03};
    const auto flows = PresentValuesByDate(AutoCall(t).Inputs(Market(500)));
    // Every observation may pay (its call); only the coupons and the final principal ever do.
    ASSERT_EQ(flows.size(), t.observationDates.size());
    for (std::size_t i = 0; i < flows.size(); ++i) {
        const Date& date = t.observationDates[i];
        EXPECT_EQ(flows[i].first, date);
        EXPECT_NEAR(flows[i].second, (t.coupons[i] + (i + 1 == flows.size())) * std::exp(-kR1 * YearsTo(date)), 1e-12);
    }
}

TEST(StructuredProducts, CashFlowsAddUpToThePrice) {
    const XScriptInputs in = AutoCall(NoteTerms()).Inputs(Market(4000));
    double total = 0.0;
    for (const auto& [date, value] : PresentValuesByDate(in)) total += value;
    EXPECT_NEAR(total, XScriptStructure(in).Price(), 1e-12);
}

// Valued after two observations, the bond keeps the coupons still to come, discounted from then;
// a note already knocked in at a performance that cannot move (no volatility) repays it.
TEST(StructuredProducts, StartedNoteKeepsItsRemainingFlowsAndState) {
    AutoCallTerms t = NoteTerms();
    t.autocallLevels = {1e6};
    t.couponBarrier = 0.0;
    t.memory = false;
    t.knockIn.barrier = 0.0;
    t.coupons = {0.01};
    XScriptInputs market = Market(500);
    market.today = t.observationDates[1] + 3;
    double expected = std::exp(-kR1 * (t.observationDates.back().SerialNumber() - market.today.SerialNumber()) / 365.0);
    for (std::size_t i = 2; i < t.observationDates.size(); ++i)
        expected += 0.01 * std::exp(-kR1 * (t.observationDates[i].SerialNumber() - market.today.SerialNumber()) / 365.0);
    const AutoCall note(t);
    EXPECT_NEAR(Priced(note.Inputs(market)).mean, expected, 1e-12);
    EXPECT_NE(note.Script(market.today).find("the note's state at the valuation date"), std::string::npos);
    EXPECT_EQ(note.EventsFrom(market.today).size(), 4u);

    AutoCallTerms knocked = NoteTerms();
    knocked.knockedIn = true;
    knocked.coupons = {0.0};
    knocked.couponBarrier = 0.0;
    knocked.memory = false;
    market.volatility = 1e-9;
    market.spot = 80.0;
    market.rate1 = market.rate2 = 0.0;
    EXPECT_NEAR(Priced(AutoCall(knocked).Inputs(market)).mean, 0.8, 1e-6);
    market.today = t.observationDates.back() + 1;
    EXPECT_EQ(FailureOf([&] { AutoCall(knocked).Inputs(market); }),
              "AutoCall: every date is before the valuation date 03/07/2024: the product has matured");
}

TEST(StructuredProducts, SnowballKnockedOutOnTheFirstDatePaysItsFirstCoupon) {
    const Snowball note({kSpot, kToday, Monthly(12), {0.0}, 0.12, {}});
    const Date first = note.Terms().observationDates.front();
    const double expected = (1.0 + 0.12 * YearsTo(first)) * std::exp(-kR1 * YearsTo(first));
    EXPECT_NEAR(Priced(note.Inputs(Market(500))).mean, expected, 1e-12);
}

double ForwardStrip(const TargetRedemptionForwardTerms& t) {
    double value = 0.0;
    for (const Date& d : t.fixingDates)
        value += std::exp(-kR1 * YearsTo(d)) * (kSpot * std::exp((kR1 - kR2) * YearsTo(d)) - t.strike);
    return value;
}

// Without a reachable target, and with the loss side at the gain's rate, every fixing is a forward.
TEST(StructuredProducts, ForwardWithoutTargetIsAStripOfForwards) {
    TargetRedemptionForwardTerms t = ForwardTerms();
    for (const double pivot : {0.0, t.strike}) {
        t.pivot = pivot;
        const Estimate price = Priced(TargetRedemptionForward(t, kToday).Inputs(Market()));
        EXPECT_NEAR(price.mean, ForwardStrip(t), 4 * price.error);
    }
}

TEST(StructuredProducts, AsianWithOneFixingIsTheVanilla) {
    for (const std::string average : {"arithmetic", "geometric"}) {
        const AsianPayoffTerms t = AsianTerms(1, average);
        const Estimate price = Priced(AsianPayoff(t).Inputs(Market()));
        EXPECT_NEAR(price.mean, GeometricAsianCall(t.strike, t.fixingDates), 4 * price.error) << average;
    }
}

TEST(StructuredProducts, GeometricAsianMatchesItsClosedForm) {
    const AsianPayoffTerms t = AsianTerms(12, "geometric");
    const Estimate price = Priced(AsianPayoff(t).Inputs(Market()));
    EXPECT_NEAR(price.mean, GeometricAsianCall(t.strike, t.fixingDates), 4 * price.error);
}

// A fixing already known moves the average exactly as that level would on every path.
TEST(StructuredProducts, PastFixingEntersTheAverage) {
    AsianPayoffTerms t = AsianTerms(4, "arithmetic");
    t.fixingDates.insert(t.fixingDates.begin(), kToday - 30);
    t.pastFixings = {{kToday - 30, 1000.0}};
    const double withPast = Priced(AsianPayoff(t).Inputs(Market(2000))).mean;
    t.pastFixings = {{kToday - 30, 960.0}};
    const double lower = Priced(AsianPayoff(t).Inputs(Market(2000))).mean;
    // Deep in the money on every path: the call moves by the discounted change of the average.
    EXPECT_NEAR(withPast - lower, 40.0 / 5 * std::exp(-kR1 * YearsTo(t.fixingDates.back())), 1e-9);
}

// The same note written by hand, laid out and named differently, prices path for path alike.
TEST(StructuredProducts, AutoCallPricesLikeItsHandWrittenScript) {
    const AutoCall note(NoteTerms());
    XScriptInputs hand = Market();
    hand.eventDates = {kToday};
    hand.eventScripts = {"s0 = 100 live = 1"};
    const std::vector<double> calls = {1.0, 1.0, 0.98, 0.96, 0.94, 0.92};
    for (std::size_t i = 0; i < calls.size(); ++i) {
        std::string script =
            "if spot() < 60 then knocked = 1 endif "
            "p = spot() / s0 "
            "if p >= 0.8 then v pays live * (0.01 + owed) owed = 0 else owed = owed + 0.01 endif ";
        if (i + 1 < calls.size())
            script += "if p >= " + std::to_string(calls[i]) + " then v pays live live = 0 endif";
        else
            script += "if p >= 0.92 then v pays live else if knocked = 1 then v pays live * min(p, 1) else v pays live endif endif";
        hand.eventDates.push_back(note.Terms().observationDates[i]);
        hand.eventScripts.push_back(script);
    }
    hand.priceVariable = "V";
    EXPECT_DOUBLE_EQ(Priced(note.Inputs(Market())).mean, Priced(hand).mean);
}

TEST(StructuredProducts, InconsistentTermsNameTheirField) {
    const auto autoCall = [](auto change) {
        return [change] {
            AutoCallTerms t = NoteTerms();
            change(t);
            AutoCall{t};
        };
    };
    const auto forward = [](auto change) {
        return [change] {
            TargetRedemptionForwardTerms t = ForwardTerms();
            change(t);
            TargetRedemptionForward(t, kToday);
        };
    };
    const std::vector<std::pair<std::function<void()>, std::string>> cases = {
        {autoCall([](AutoCallTerms& t) { t.knockIn.barrier = 0.95; }),
         "AutoCall: field 'knock_in_barrier' (0.95) must be below every autocall level (0.92)"},
        {autoCall([](AutoCallTerms& t) { t.couponBarrier = 0.95; }),
         "AutoCall: field 'coupon_barrier' (0.95) must not be above an autocall level (0.92)"},
        {autoCall([](AutoCallTerms& t) { t.coupons = {0.01, 0.02}; }),
         "AutoCall: field 'coupons' has 2 values for 6 observation dates: give one value, or one per date"},
        {autoCall([](AutoCallTerms& t) { std::swap(t.observationDates[1], t.observationDates[2]); }),
         "AutoCall: field 'observation_dates[2]' (02/03/2024) must be after 02/04/2024"},
        {autoCall([](AutoCallTerms& t) { t.underlyings = 3; }),
         "AutoCall: field 'underlyings' is 3: a worst-of needs a Monte Carlo of several underlyings, and the script "
         "pricer simulates one"},
        {autoCall([](AutoCallTerms& t) { t.knockIn.monitoring = "weekly"; }),
         "AutoCall: field 'knock_in_monitoring' is 'weekly': must be one of 'continuous', 'discrete'"},
        {forward([](TargetRedemptionForwardTerms& t) { t.pivot = 105.0; }),
         "TargetRedemptionForward: field 'pivot' (105) must not be above the strike (101)"},
        {forward([](TargetRedemptionForwardTerms& t) { t.targetAmount = 0.0, t.targetCount = 13; }),
         "TargetRedemptionForward: field 'target_count' (13) is never reached: it must be from 1 to the 12 fixings"},
        {forward([](TargetRedemptionForwardTerms& t) { t.targetCount = 2; }),
         "TargetRedemptionForward: field 'target_amount' or 'target_count': give exactly one of the two targets"},
        {forward([](TargetRedemptionForwardTerms& t) { t.targetAmount = 0.0, t.targetCount = 2, t.lastGain = "partial"; }),
         "TargetRedemptionForward: field 'last_gain' 'partial' needs a target by amount ('target_amount')"},
        {[] { AsianPayoff(AsianTerms(3, "harmonic")); },
         "AsianPayoff: field 'average' is 'harmonic': must be one of 'arithmetic', 'geometric'"},
        {[] {
             AsianPayoffTerms t = AsianTerms(3, "arithmetic");
             t.pastFixings = {{t.fixingDates[0], 99.0}};
             AsianPayoff(t).Inputs(Market());
         },
         "AsianPayoff: field 'past_fixings.02/02/2024' is after the valuation date 02/01/2024"},
    };
    for (const auto& [build, message] : cases) EXPECT_EQ(FailureOf(build), message);
}

}  // namespace
}  // namespace zep
