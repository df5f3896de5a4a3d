// Evaluates a ScriptProduct on simulated paths. One evaluator per thread, built once and
// reused for every path: it owns the stacks and save areas of the two compiled streams (sharp and
// smoothed) and of the two tree-walking evaluators, so no evaluation allocates.
//
// A scenario holds, per event date in date order, the simulated spot and the numeraire factor
// by which that date's payments are multiplied. Every call starts from variables at zero and
// leaves the final value of each variable in the caller's array (VariableNames() order).
#pragma once

#include <span>

#include "lum-monte-carlo/script/Evaluator.hpp"
#include "lum-monte-carlo/script/FuzzyEvaluator.hpp"
#include "lum-monte-carlo/script/ScriptProduct.hpp"

namespace zep {

class ScriptPathEvaluator {
public:
    // The product must outlive the evaluator. fuzzyEps: width of comparisons without their own.
    explicit ScriptPathEvaluator(const ScriptProduct& product, double fuzzyEps = kDefaultFuzzyEps);

    // Sharp logic through the compiled stream: the fast path.
    void Evaluate(std::span<const ScenarioPoint> scenario, std::span<double> variables);
    // Sharp logic by walking the trees (Evaluator<double>); same values, slower.
    void EvaluateTree(std::span<const ScenarioPoint> scenario, std::span<double> variables);
    // Smoothed logic through the compiled smoothed stream, for stable sensitivities.
    void EvaluateFuzzy(std::span<const ScenarioPoint> scenario, std::span<double> variables);
    // Smoothed logic by walking the trees (FuzzyEvaluator<double>); same values, slower.
    void EvaluateFuzzyTree(std::span<const ScenarioPoint> scenario, std::span<double> variables);

    // One event date at a time, for pricers that evaluate while they simulate; variables carry
    // over from the previous event and are not reset.
    void EvaluateEvent(std::size_t event, ScenarioPoint point, std::span<double> variables) {
        m_product.Compiled().RunEvent(event, point.spot, point.numeraire, variables.data(), m_scratch);
    }
    void EvaluateEventTree(std::size_t event, ScenarioPoint point, std::span<double> variables) {
        m_evaluator.RunEvent(m_product.Events()[event], point.spot, point.numeraire, variables);
    }

private:
    void Check(std::span<const ScenarioPoint> scenario, std::span<double> variables) const;

    const ScriptProduct& m_product;
    CompiledScript::Scratch m_scratch;
    CompiledScript::Scratch m_smoothedScratch;
    Evaluator<double> m_evaluator;
    FuzzyEvaluator<double> m_fuzzyEvaluator;
};

}  // namespace zep
