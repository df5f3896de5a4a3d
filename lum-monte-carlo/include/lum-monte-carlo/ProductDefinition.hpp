// A scripted product described as JSON or YAML text: valuation date, market, model, simulation
// settings, named fields and dated event scripts. The layout (YAML shown; JSON is the same tree):
//
//   valuation_date: 2024-01-02
//   market: {spot: 100, volatility: 0.2, rate1: 0.03, rate2: 0.01}
//   model: {type: BlackScholes, parameters: []}     # type: name or code 1..4
//   simulation: {paths: 100000, seed: 7, day_basis: 365, quasi_random: false,
//                adaptive_shift: true, adaptive_shift_barrier: 70}
//   price_variable: PAYOFF                           # optional
//   notional: 1000000                                # optional
//   fields: {Strike: 100, KnockIn: 0.7}              # constants the scripts read by name
//   events:
//     - date: 2024-02-02
//       script: "IF SPOT() / STRIKE >= 1 THEN ... ENDIF"
//     - schedule: {start: 2024-01-03, end: 2025-01-02, weekdays_only: true}
//       script: "IF SPOT() / STRIKE < KNOCKIN THEN KI = 1 ENDIF"
//
// A schedule repeats its script on every day (or weekday) from start to end. Scripts falling
// on the same date run in the order listed. Fields become assignments run before the first
// event's script. Every malformed entry raises a message that names the field at fault.
#pragma once

#include <string>

#include <nlohmann/json.hpp>

#include "lum-monte-carlo/XScriptStructure.hpp"

namespace zep {

// JSON when the text starts with '{' (after blanks), YAML otherwise.
XScriptInputs ProductDefinitionFromText(const std::string& text);
XScriptInputs ProductDefinitionFromFile(const std::string& path);

// The steps of the above, for readers of other definitions (the product classes' loader):
// the text as a tree, read as a whole definition or as its market part only (valuation_date,
// market, model, simulation), and a file's text.
nlohmann::json DefinitionTree(const std::string& text);
XScriptInputs ProductDefinitionFromTree(const nlohmann::json& tree);
XScriptInputs MarketDefinitionFromTree(const nlohmann::json& tree);
std::string DefinitionFileText(const std::string& path);

}  // namespace zep
