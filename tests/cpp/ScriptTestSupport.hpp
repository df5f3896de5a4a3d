// Runs payoff scripts for the tests: builds a product from script texts (one per event, dates a
// month apart) and evaluates it on a scenario with each of the four evaluators.
#pragma once

#include <map>
#include <string>
#include <vector>

#include "lum-auxiliary/Error.hpp"
#include "lum-monte-carlo/script/ScriptPathEvaluator.hpp"
#include "lum-monte-carlo/script/ScriptProduct.hpp"

namespace zep::testing {

enum class Logic { Compiled, Tree, Fuzzy, FuzzyTree };

inline std::vector<Date> MonthlyDates(std::size_t count) {
    std::vector<Date> dates;
    for (std::size_t i = 0; i < count; ++i) dates.push_back(Date(15, 1, 2030).Advance(static_cast<std::int32_t>(i), Months));
    return dates;
}

inline ScriptProduct MakeProduct(const std::vector<std::string>& scripts) {
    return ScriptProduct(MonthlyDates(scripts.size()), scripts);
}

inline std::map<std::string, double> RunScript(const ScriptProduct& product, const std::vector<ScenarioPoint>& path,
                                         Logic logic = Logic::Compiled, double eps = kDefaultFuzzyEps) {
    ScriptPathEvaluator evaluator(product, eps);
    std::vector<double> values(product.VariableCount());
    if (logic == Logic::Compiled) evaluator.Evaluate(path, values);
    if (logic == Logic::Tree) evaluator.EvaluateTree(path, values);
    if (logic == Logic::Fuzzy) evaluator.EvaluateFuzzy(path, values);
    if (logic == Logic::FuzzyTree) evaluator.EvaluateFuzzyTree(path, values);
    std::map<std::string, double> named;
    for (std::size_t i = 0; i < values.size(); ++i) named[product.VariableNames()[i]] = values[i];
    return named;
}

// One event at the given spot, numeraire 1.
inline std::map<std::string, double> RunOne(const std::string& script, double spot = 100.0,
                                            Logic logic = Logic::Compiled, double eps = kDefaultFuzzyEps) {
    return RunScript(MakeProduct({script}), {{spot, 1.0}}, logic, eps);
}

// The library message of the failure that building the product raises, or "" when none.
inline std::string BuildFailure(const std::vector<std::string>& scripts) {
    try {
        MakeProduct(scripts);
    } catch (const Error& error) {
        return error.Message();
    }
    return "";
}

}  // namespace zep::testing
