// Historical scenarios: the market moves of each past day replayed on today's market. The history
// holds the level of each market factor on each day (zero rates of curve pillars and curve levels
// as decimal rates, credit spread levels as decimals, spots, volatilities as decimals); the scenario of day t shocks each factor by
// its move from day t-1 to day t, the difference for an absolute factor and the ratio less one for
// a relative one. Curve and credit spread moves reach their curves in basis points.
#pragma once

#include <vector>

#include "lum-risk-metrics/Scenario.hpp"

namespace zep::scenario {

struct FactorHistory {
    // What each factor moves and how its return is taken (the shock's type); the sizes are unused.
    std::vector<Shock> factors;
    // One row per day, oldest first, one level per factor.
    std::vector<std::vector<double>> levels;
};

// One HISTORICAL scenario per day after the first, named "day <t>" (t counting rows from 0).
// Fails on fewer than two days, a row of the wrong length or holding a non-number (a gap), and a
// relative factor whose level is not above zero.
std::vector<Scenario> HistoricalScenarios(const FactorHistory& history);

}  // namespace zep::scenario
