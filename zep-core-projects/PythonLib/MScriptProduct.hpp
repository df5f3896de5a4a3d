// Python-facing payoff script product: lets a user check scripts before pricing them, by
// listing the variables, printing the prepared trees and evaluating one scenario by hand.
#pragma once

#include <string>
#include <utility>
#include <vector>

#include "DateInput.hpp"
#include "MWrapper.hpp"
#include "lum-monte-carlo/script/ScriptPathEvaluator.hpp"
#include "lum-monte-carlo/script/ScriptProduct.hpp"

namespace zep::python {

class MScriptProduct : public MWrapper<zep::ScriptProduct> {
public:
    MScriptProduct() = default;
    // One script text per event date, dates strictly increasing.
    MScriptProduct(const std::vector<DateInput>& eventDates, const std::vector<std::string>& scriptTexts);

    std::size_t EventCount() const;
    std::vector<zep::Date> EventDates() const;
    std::vector<std::string> VariableNames() const;
    std::string DebugText() const;
    // Final value of every variable, in index order, on one scenario of (spot, numeraire) per
    // event date; smooth selects the fuzzy evaluator with default width eps.
    std::vector<std::pair<std::string, double>> Evaluate(const std::vector<zep::ScenarioPoint>& scenario,
                                                         bool smooth = false,
                                                         double eps = zep::kDefaultFuzzyEps) const;
};

}  // namespace zep::python
