#include "lum-monte-carlo/ProductDefinition.hpp"

#include <gtest/gtest.h>

#include "ParamNames.hpp"

#include <cstring>
#include <stdexcept>
#include <string>
#include <vector>

#include "lum-monte-carlo/script/ScriptPathEvaluator.hpp"
#include "lum-monte-carlo/script/ScriptProduct.hpp"

namespace {

// A definition whose only field is F, written as `value`, and whose script copies it to X.
std::string Definition(const std::string& value, bool json) {
    if (json)
        return R"({"valuation_date": "2024-01-02", "market": {"spot": 100, "volatility": 0.2, "rate1": 0.03,
                   "rate2": 0.01}, "model": {"type": "BlackScholes"}, "fields": {"F": )" +
               value + R"(}, "events": [{"date": "2025-01-02", "script": "X = F"}]})";
    return "valuation_date: 2024-01-02\n"
           "market: {spot: 100, volatility: 0.2, rate1: 0.03, rate2: 0.01}\n"
           "model: {type: BlackScholes}\n"
           "fields: {F: " + value + "}\n"
           "events:\n"
           "  - {date: 2025-01-02, script: X = F}\n";
}

// The value of X once the first event's script (the field assignment, then X = F) has run.
double ScriptValueOfX(const zep::XScriptInputs& inputs) {
    const zep::ScriptProduct product({inputs.eventDates.front()}, {inputs.eventScripts.front()});
    zep::ScriptPathEvaluator evaluator(product);
    std::vector<double> values(product.VariableCount());
    const zep::ScenarioPoint point{100.0, 1.0};
    evaluator.EvaluateTree({&point, 1}, values);
    for (std::size_t i = 0; i < values.size(); ++i)
        if (product.VariableNames()[i] == "X") return values[i];
    return -1.0;
}

// The base definition with `from` replaced by `to` is refused with `message`.
void ExpectRefused(const std::string& base, const std::string& from, const std::string& to, const std::string& message) {
    std::string text = base;
    text.replace(text.find(from), from.size(), to);
    try {
        zep::ProductDefinitionFromText(text);
        ADD_FAILURE() << to << " was accepted";
    } catch (const std::invalid_argument& e) {
        EXPECT_EQ(std::string(e.what()), "Product definition: " + message) << to;
    }
}

struct FieldCase {
    const char* text;
    double value;
};

class ProductDefinitionField : public ::testing::TestWithParam<FieldCase> {};

// Values a plain decimal or exponent notation spells, down to the smallest normal number; the
// script must see the very double the definition gives, whatever its size.
TEST_P(ProductDefinitionField, ReachesTheScriptsExactly) {
    const auto& [text, value] = GetParam();
    for (const bool json : {true, false}) {
        const double seen = ScriptValueOfX(zep::ProductDefinitionFromText(Definition(text, json)));
        EXPECT_EQ(std::memcmp(&seen, &value, sizeof value), 0)
            << text << (json ? " in JSON" : " in YAML") << " reaches the script as " << seen;
    }
}

INSTANTIATE_TEST_SUITE_P(
    Values, ProductDefinitionField,
    ::testing::Values(FieldCase{"0.0075", 0.0075}, FieldCase{"1e-6", 1e-6}, FieldCase{"-2.5E-9", -2.5e-9},
                      FieldCase{"1e+20", 1e20}, FieldCase{"123456789.125", 123456789.125},
                      FieldCase{"0.1", 0.1}, FieldCase{"-0.0", -0.0}, FieldCase{"1.7976931348623157e308", 1.7976931348623157e308},
                      FieldCase{"2.2250738585072014e-308", 2.2250738585072014e-308}),
    [](const ::testing::TestParamInfo<FieldCase>& info) { return zep::testing::NameOf(info.param.text); });

// YAML reads "nan" and "inf" as numbers, and any text reads a subnormal number; the script
// language holds none of them.
TEST(ProductDefinition, RefusesFieldsTheScriptsCannotHold) {
    for (const char* text : {"nan", "inf", "-infinity", "1e-310"}) {
        try {
            zep::ProductDefinitionFromText(Definition(text, false));
            ADD_FAILURE() << text << " was accepted";
        } catch (const std::invalid_argument& e) {
            EXPECT_EQ(std::string(e.what()), "Product definition: field 'fields.F' must be a finite number, zero or at "
                                             "least 2.2250738585072014e-308 in size")
                << text;
        }
    }
}

// Counts and codes are integers: a number beyond what their integer type holds is refused.
TEST(ProductDefinition, RefusesCountsAndCodesBeyondTheirRange) {
    const std::string base = Definition("1", false);
    const struct {
        const char* from;
        const char* to;
        const char* message;
    } cases[] = {
        {"{type: BlackScholes}", "{type: 1e10}", "field 'model.type' must be a model name or code"},
        {"{type: BlackScholes}", "{type: nan}", "field 'model.type' must be a model name or code"},
        {"fields:", "simulation: {paths: 1e300}\nfields:", "field 'simulation.paths' is out of range for a number of paths"},
        {"fields:", "simulation: {seed: -1}\nfields:", "field 'simulation.seed' is out of range for a seed"},
        {"fields:", "simulation: {seed: 18446744073709551616}\nfields:", "field 'simulation.seed' is out of range for a seed"},
    };
    for (const auto& [from, to, message] : cases) ExpectRefused(base, from, to, message);
    std::string largest = base;
    largest.replace(largest.find("fields:"), 7, "simulation: {seed: 18446744073709549568}\nfields:");
    EXPECT_EQ(zep::ProductDefinitionFromText(largest).seed, 18446744073709549568u);
}

// An empty date text reads as the null date, on which nothing can happen.
TEST(ProductDefinition, RefusesEmptyDates) {
    const std::string base = Definition("1", true);
    ExpectRefused(base, R"("date": "2025-01-02")", R"("date": "")", "field 'events[0].date' is not a valid date: ''");
    ExpectRefused(base, R"("valuation_date": "2024-01-02")", R"("valuation_date": "")",
                  "field 'valuation_date' is not a valid date: ''");
}

// An alias inside its own anchor stands for an endless tree, nested aliases for an exponentially
// large one: both are refused, not followed until the stack or the memory runs out.
TEST(ProductDefinition, RefusesYamlAliasesThatExpandWithoutBound) {
    std::string laughs = "a0: &a0 [1, 1, 1, 1, 1, 1, 1, 1, 1, 1]\n";
    for (int level = 1; level <= 8; ++level) {
        const std::string previous = "*a" + std::to_string(level - 1);
        laughs += "a" + std::to_string(level) + ": &a" + std::to_string(level) + " [";
        for (int i = 0; i < 10; ++i) laughs += (i ? ", " : "") + previous;
        laughs += "]\n";
    }
    for (const std::string& text : {Definition("1", false) + "loop: &loop [*loop]\n",
                                    Definition("1", false) + "loop: &loop {again: *loop}\n",
                                    Definition("1", false) + laughs}) {
        try {
            zep::ProductDefinitionFromText(text);
            ADD_FAILURE() << text << "\nwas accepted";
        } catch (const std::invalid_argument& e) {
            EXPECT_EQ(std::string(e.what()), "Product definition: malformed YAML: more than 100000 nodes or 64 levels "
                                             "once its aliases are expanded");
        }
    }
}

}  // namespace
