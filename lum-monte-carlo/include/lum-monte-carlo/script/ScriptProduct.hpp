// A product written in the payoff script language: its event dates, each with the statements
// parsed from its script text, prepared by the visitors in their fixed order (VarIndexer,
// ConstProcessor, ConstCondProcessor, IfProcessor, DomainProcessor) and compiled. Immutable
// once built, so one product may be evaluated from several threads, each with its own
// ScriptPathEvaluator.
//
// Use from a Monte Carlo pricer:
//   const zep::ScriptProduct product(dates, scripts);           // raises on any script error
//   // per thread:
//   zep::ScriptPathEvaluator evaluator(product);                // allocates its working memory
//   std::vector<double> variables(product.VariableCount());
//   std::vector<zep::ScenarioPoint> path(product.EventCount()); // spot, numeraire per date
//   for each path: fill `path`; evaluator.Evaluate(path, variables);  // compiled, no allocation
//   accumulate variables[i] (names: product.VariableNames()[i]).
#pragma once

#include <string>
#include <vector>

#include "lum-monte-carlo/script/CompiledScript.hpp"
#include "lum-monte-carlo/script/Nodes.hpp"
#include "lum-time/Date.hpp"

namespace zep {

class ScriptProduct {
public:
    // One script text per event date; dates strictly increasing. Raises the script language's
    // message for the first script that fails; nothing of a failed product is kept.
    ScriptProduct(std::vector<Date> eventDates, const std::vector<std::string>& scripts);

    std::size_t EventCount() const { return m_eventDates.size(); }
    const std::vector<Date>& EventDates() const { return m_eventDates; }
    // In index order: the value of variable i is element i of every variable array.
    const std::vector<std::string>& VariableNames() const { return m_variableNames; }
    std::size_t VariableCount() const { return m_variableNames.size(); }
    // The prepared statements of each event date.
    const std::vector<Statements>& Events() const { return m_events; }
    const CompiledScript& Compiled() const { return m_compiled; }
    // The same statements with smoothed logic, for the sensitivities' re-pricings.
    const CompiledScript& CompiledSmoothed() const { return m_compiledSmoothed; }
    // Deepest nesting of IF statements, which sizes the fuzzy evaluator's save areas.
    std::size_t IfNesting() const { return m_ifNesting; }
    // The prepared trees as printed by Debugger, under one heading per event date.
    std::string DebugText() const;

private:
    std::vector<Date> m_eventDates;
    std::vector<Statements> m_events;
    std::vector<std::string> m_variableNames;
    CompiledScript m_compiled;
    CompiledScript m_compiledSmoothed;
    std::size_t m_ifNesting = 0;
};

}  // namespace zep
