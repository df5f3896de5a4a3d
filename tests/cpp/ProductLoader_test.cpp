#include <gtest/gtest.h>

#include "lum-monte-carlo/products/AutoCall.hpp"
#include "lum-monte-carlo/products/ProductLoader.hpp"
#include "lum-monte-carlo/products/ProductSchemas.hpp"

namespace zep {
namespace {

const std::string kMarket = R"(
valuation_date: 2024-01-02
market: {spot: 100, volatility: 0.2, rate1: 0.03, rate2: 0.01}
model: {type: BlackScholes}
simulation: {paths: 4000, seed: 11}
)";

const std::string kAutoCall = R"(
type: AutoCall
initial_level: 100
strike_date: 2024-01-02
observation_dates: [2024-04-02, 2024-07-02, 2024-10-02, 2025-01-02]
autocall_levels: [1.0, 0.95, 0.9, 0.85]
coupons: 0.02
coupon_barrier: 0.7
knock_in_barrier: 0.6
notional: 1000
)";

std::string FailureOf(const std::string& definition, const std::string& market = kMarket) {
    try {
        BookProductFromText(definition, market);
    } catch (const std::exception& e) {
        return e.what();
    }
    return "";
}

TEST(ProductLoader, TypedDefinitionBooksItsClass) {
    const BookedProduct booked = BookProductFromText(kAutoCall, kMarket);
    AutoCallTerms terms{100.0, Date(2, 1, 2024), {Date(2, 4, 2024), Date(2, 7, 2024), Date(2, 10, 2024), Date(2, 1, 2025)},
                        {1.0, 0.95, 0.9, 0.85}, {0.02}, 0.7, false, {0.6, "continuous"}};
    const AutoCall direct(terms);
    EXPECT_EQ(booked.Script(), direct.Script());
    EXPECT_EQ(booked.inputs.notional, 1000.0);
    EXPECT_EQ(booked.inputs.numSimulations, 4000);
    EXPECT_EQ(booked.inputs.eventScripts, direct.Inputs(booked.inputs).eventScripts);
}

TEST(ProductLoader, JsonAndYamlBookTheSameProduct) {
    const std::string json = R"({"type": "AsianPayoff", "fixing_dates": ["2024-02-02", "2024-03-04"], "strike": 100,
                                 "average": "geometric"})";
    const std::string yaml = "type: AsianPayoff\nfixing_dates: [2024-02-02, 2024-03-04]\nstrike: 100\naverage: geometric\n";
    EXPECT_EQ(BookProductFromText(json, kMarket).Script(), BookProductFromText(yaml, kMarket).Script());
}

// Weekends only: 30 June 2024 is a Sunday, and the modified following roll stays in June.
TEST(ProductLoader, ScheduleGivesTheRolledDates) {
    const std::string terms = "type: AsianPayoff\nstrike: 100\nfixing_dates: ";
    const std::string rolled = "{start: 2024-03-30, end: 2024-07-30, tenor: 1M, roll: ModifiedFollowing}\n";
    const std::string listed = "[2024-04-30, 2024-05-30, 2024-06-28, 2024-07-30]\n";
    EXPECT_EQ(BookProductFromText(terms + rolled, kMarket).Script(), BookProductFromText(terms + listed, kMarket).Script());
    EXPECT_EQ(FailureOf(terms + "{start: 2024-03-30, end: 2024-07-30, tenor: 1Q}\n"),
              "AsianPayoff: field 'fixing_dates' is not a valid schedule: Last character of a period string must be one of {d, w, m, y}");
    EXPECT_EQ(FailureOf(terms + "{start: 2024-03-30, tenor: 1M}\n"), "AsianPayoff: field 'fixing_dates.end' is missing");
    EXPECT_EQ(FailureOf(terms + "{start: 2024-03-30, end: 2024-07-30, tenor: 9999Y}\n"),
              "AsianPayoff: field 'fixing_dates' is not a valid schedule: Year out of bounds after increasing date");
    // Saturday 6 and Sunday 7 April roll onto Monday 8 April, observed once.
    EXPECT_EQ(BookProductFromText(terms + "{start: 2024-04-04, end: 2024-04-09, tenor: 1D, roll: Following}\n", kMarket).Script(),
              BookProductFromText(terms + "[2024-04-05, 2024-04-08, 2024-04-09]\n", kMarket).Script());
}

TEST(ProductLoader, ScriptedDefinitionKeepsWorking) {
    const std::string scripted = kMarket + "events:\n  - {date: 2025-01-02, script: 'V PAYS 1'}\n";
    const BookedProduct alone = BookProductFromText(scripted, "");
    EXPECT_EQ(alone.product, nullptr);
    EXPECT_EQ(alone.inputs.numSimulations, 4000);
    // A market given beside it replaces the definition's own.
    const BookedProduct moved = BookProductFromText("type: Scripted\n" + scripted, "valuation_date: 2024-06-03\n"
                                                    "market: {spot: 90, rate1: 0.05, rate2: 0}\nmodel: {type: 2}\n");
    EXPECT_EQ(moved.inputs.today, Date(3, 6, 2024));
    EXPECT_EQ(moved.inputs.spot, 90.0);
    EXPECT_EQ(moved.inputs.model, 2);
}

TEST(ProductLoader, SchemaViolationsNameTheirField) {
    const std::vector<std::pair<std::string, std::string>> cases = {
        {kAutoCall + "colour: red\n", "AutoCall: field 'colour' is not a known field"},
        {"type: AutoCall\ninitial_level: 100\n", "AutoCall: field 'strike_date' is missing"},
        {kAutoCall + "memory: 3\n", "AutoCall: field 'memory' must be true or false"},
        {kAutoCall + "underlyings: 1.5\n", "AutoCall: field 'underlyings' must be an integer"},
        {kAutoCall + "underlyings: 1e300\n", "AutoCall: field 'underlyings' must be a count from 0 to 1000000"},
        {kAutoCall + "knock_in_monitoring: weekly\n",
         "AutoCall: field 'knock_in_monitoring' is \"weekly\": must be one of \"continuous\", \"discrete\""},
        // Bytes that are not UTF-8 (YAML lets them through) still give the message, shown as U+FFFD.
        {kAutoCall + "knock_in_monitoring: \"w\xff\"\n",
         "AutoCall: field 'knock_in_monitoring' is \"w\xef\xbf\xbd\": must be one of \"continuous\", \"discrete\""},
        {"type: \"S\xff\"\n", "Product definition: field 'type' names an unknown product type \"S\xef\xbf\xbd\": "
                              "one of AutoCall, Snowball, TargetRedemptionForward, AsianPayoff, Scripted"},
        {"type: Snowball\ninitial_level: 100\nstrike_date: 2024-01-02\nobservation_dates: [2024-02-02, x]\n"
         "knock_out_levels: 1\ncoupon_rate: 0.1\n",
         "Snowball: field 'observation_dates[1]' is not a valid date: 'x'"},
        {"type: AsianPayoff\nfixing_dates: [2024-02-02]\npast_fixings: {2024-01-02: -1}\n",
         "AsianPayoff: field 'past_fixings.2024-01-02' must be above 0"},
        {"type: Swap\n", "Product definition: field 'type' names an unknown product type \"Swap\": one of AutoCall, "
                         "Snowball, TargetRedemptionForward, AsianPayoff, Scripted"},
    };
    for (const auto& [definition, message] : cases) EXPECT_EQ(FailureOf(definition), message);
    EXPECT_EQ(FailureOf(kAutoCall, "valuation_date: 2024-01-02\nmarket: {spot: 100, rate1: 0.03}\nmodel: {type: 1}\n"),
              "Market: field 'market.rate2' is missing");
    EXPECT_EQ(FailureOf(kAutoCall, ""), "AutoCall: a market is needed to price it");
}

TEST(ProductLoader, EverySchemaIsShipped) {
    EXPECT_EQ(ProductSchemaNames(),
              (std::vector<std::string>{"AsianPayoff", "AutoCall", "Market", "Snowball", "TargetRedemptionForward"}));
}

}  // namespace
}  // namespace zep
