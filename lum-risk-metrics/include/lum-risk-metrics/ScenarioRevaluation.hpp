// Full revaluation of a portfolio under a list of scenarios: the P&L of every position under
// every scenario, its quantity times the change of its PV from the unshocked market. One shocked
// market per scenario is shared by all positions, so a shocked curve is rebuilt once per scenario,
// and a position that reads nothing the scenario names keeps a P&L of exactly zero unpriced.
// Positions are only read while revaluing, so several scenarios are revalued at once.
#pragma once

#include <cstddef>
#include <vector>

#include "lum-risk-metrics/Portfolio.hpp"
#include "lum-risk-metrics/Scenario.hpp"

namespace zep::scenario {

struct ScenarioPnL {
    std::size_t positions = 0;
    std::size_t scenarios = 0;
    std::vector<double> values;  // scenario-major: values[scenario * positions + position]

    double At(std::size_t position, std::size_t scenario) const { return values[scenario * positions + position]; }
    // The portfolio's P&L under each scenario.
    std::vector<double> Total() const;
};

// The threads a revaluation of that many scenarios runs on: one under ZEP_RUNMODE=CPU or
// SINGLETHREAD, else ZEP_NUM_THREADS (1 to 64) or every hardware thread, never more than the
// scenarios.
std::size_t RevaluationThreads(std::size_t scenarios);

// Scenarios are shared out over RevaluationThreads in contiguous blocks; each scenario's row is
// computed by one thread alone, so the P&L is bit for bit the same whatever the thread count.
// Fails on a shock naming a market object no position reads (naming the scenario and the shock),
// and on a position that cannot be revalued (naming the trade and the scenario).
ScenarioPnL Revalue(const metrics::Portfolio& portfolio, const std::vector<Scenario>& scenarios);

}  // namespace zep::scenario
