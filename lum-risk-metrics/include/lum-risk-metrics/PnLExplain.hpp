// Risk-based P&L explain: a scenario's P&L predicted from each trade's sensitivities and the
// scenario's moves of what the trade reads, set against the P&L of full revaluation. With x the
// spot move in percent, v the volatility move in points, r_i the zero-rate move of curve pillar i
// and c the credit spread move, both in basis points,
//   delta = DELTA (or FX_DELTA) x,  gamma = GAMMA x^2 / 2,  vega = VEGA v,
//   rates = sum_i KEY_RATE_DV01_i r_i,  credit = CS01 c,
// and the unexplained remainder is full revaluation minus their sum: of third order in the spot
// move for a trade whose cross and higher terms vanish, and a measure of what the sensitivities
// miss otherwise. A sensitivity a trade does not have explains nothing.
#pragma once

#include <string>
#include <vector>

#include "lum-risk-metrics/Portfolio.hpp"
#include "lum-risk-metrics/Scenario.hpp"

namespace zep::scenario {

struct PnLExplain {
    std::string scenario;
    double full = 0.0;  // full revaluation
    double delta = 0.0;
    double gamma = 0.0;
    double vega = 0.0;
    double rates = 0.0;
    double credit = 0.0;
    double unexplained = 0.0;  // full - delta - gamma - vega - rates - credit
};

// One row per scenario, summed over the positions with their quantities. Fails like Revalue on a
// trade that cannot be revalued; the sensitivities are computed once per trade.
std::vector<PnLExplain> ExplainPnL(const metrics::Portfolio& portfolio, const std::vector<Scenario>& scenarios);

}  // namespace zep::scenario
