#include "lum-monte-carlo/script/ScriptPathEvaluator.hpp"

#include <algorithm>
#include <string>

#include "lum-auxiliary/Error.hpp"

namespace zep {

ScriptPathEvaluator::ScriptPathEvaluator(const ScriptProduct& product, double fuzzyEps)
    : m_product(product),
      m_scratch(product.Compiled().MakeScratch()),
      m_smoothedScratch(product.CompiledSmoothed().MakeScratch(fuzzyEps)),
      m_fuzzyEvaluator(product.VariableCount(), product.IfNesting(), fuzzyEps) {
    ZEP_REQUIRE(fuzzyEps >= 0.0, "The fuzzy width eps must not be negative");
}

void ScriptPathEvaluator::Check(std::span<const ScenarioPoint> scenario, std::span<double> variables) const {
    if (scenario.size() != m_product.EventCount())
        ZEP_FAIL("The scenario has " + std::to_string(scenario.size()) + " points but the product has " +
                 std::to_string(m_product.EventCount()) + " event dates");
    if (variables.size() != m_product.VariableCount())
        ZEP_FAIL("The variable array has " + std::to_string(variables.size()) + " slots but the product has " +
                 std::to_string(m_product.VariableCount()) + " variables");
}

void ScriptPathEvaluator::Evaluate(std::span<const ScenarioPoint> scenario, std::span<double> variables) {
    Check(scenario, variables);
    std::fill(variables.begin(), variables.end(), 0.0);
    m_product.Compiled().RunPath(scenario.data(), variables.data(), m_scratch);
}

void ScriptPathEvaluator::EvaluateTree(std::span<const ScenarioPoint> scenario, std::span<double> variables) {
    Check(scenario, variables);
    std::fill(variables.begin(), variables.end(), 0.0);
    for (std::size_t event = 0; event < scenario.size(); ++event)
        EvaluateEventTree(event, scenario[event], variables);
}

void ScriptPathEvaluator::EvaluateFuzzy(std::span<const ScenarioPoint> scenario, std::span<double> variables) {
    Check(scenario, variables);
    std::fill(variables.begin(), variables.end(), 0.0);
    m_product.CompiledSmoothed().RunPath(scenario.data(), variables.data(), m_smoothedScratch);
}

void ScriptPathEvaluator::EvaluateFuzzyTree(std::span<const ScenarioPoint> scenario, std::span<double> variables) {
    Check(scenario, variables);
    std::fill(variables.begin(), variables.end(), 0.0);
    for (std::size_t event = 0; event < scenario.size(); ++event) {
        const ScenarioPoint point = scenario[event];
        m_fuzzyEvaluator.RunEvent(m_product.Events()[event], point.spot, point.numeraire, variables);
    }
}

}  // namespace zep
