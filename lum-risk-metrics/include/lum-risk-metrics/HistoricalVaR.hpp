// Historical value at risk of a portfolio: every past day's market moves replayed on today's
// market (HistoricalScenarios), every position revalued in full (Revalue), and the tail of the
// portfolio's P&L read at each confidence level (ValueAtRisk.hpp for the rank convention).
// Component VaR is the Euler allocation of the historical VaR: each group's share is minus its own
// P&L in the scenario at the VaR rank, so the components add up to the VaR exactly.
#pragma once

#include <map>
#include <string>
#include <vector>

#include "lum-risk-metrics/HistoricalScenarios.hpp"
#include "lum-risk-metrics/Portfolio.hpp"
#include "lum-risk-metrics/ScenarioRevaluation.hpp"
#include "lum-risk-metrics/ValueAtRisk.hpp"

namespace zep::scenario {

struct VaRFigures : TailFigures {
    std::map<std::string, double> components;  // by group
};

struct HistoricalVaRReport {
    std::vector<std::string> scenarioNames;
    std::vector<double> pnl;  // the portfolio's P&L per scenario
    std::vector<VaRFigures> figures;  // one per confidence level, in the order asked
};

// Fails on no confidence level, a confidence level outside (0, 1) or an empty portfolio: checked
// before any revaluation, wherever the revaluation runs.
void CheckVaRInputs(const metrics::Portfolio& portfolio, const std::vector<double>& confidences,
                    std::size_t scenarioCount);

// The report from a P&L matrix revalued elsewhere (another process, another machine), one
// scenario per name in that order; the same figures HistoricalVaR gives for the same matrix.
HistoricalVaRReport VaRReport(const metrics::Portfolio& portfolio, std::vector<std::string> scenarioNames,
                              const ScenarioPnL& pnl, const std::vector<double>& confidences,
                              const std::string& tag = "");

// Groups are the values of the tag (positions without it under ""); an empty tag groups by trade.
HistoricalVaRReport HistoricalVaR(const metrics::Portfolio& portfolio, const FactorHistory& history,
                                  const std::vector<double>& confidences, const std::string& tag = "");

}  // namespace zep::scenario
