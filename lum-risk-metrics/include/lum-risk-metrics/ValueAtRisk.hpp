// Value at risk and expected shortfall of a P&L sample, one P&L per scenario, losses positive.
// Convention: with the N P&Ls sorted from the worst up (ties by scenario order), the VaR at
// confidence c is the loss at rank k = ceil((1 - c) * N) (from 1; k is taken to 1e-9 so that a
// product such as 0.01 * 500 that is whole in decimals is not pushed up a rank by binary
// rounding), and the expected shortfall the mean loss of the k worst scenarios.
#pragma once

#include <cstddef>
#include <vector>

namespace zep::scenario {

struct TailFigures {
    double confidence = 0.0;
    double valueAtRisk = 0.0;
    double expectedShortfall = 0.0;
    std::size_t scenario = 0;  // the scenario at the VaR rank, whose P&L is minus the VaR
};

// Fails for a confidence outside (0, 1) and an empty sample.
std::size_t VaRRank(double confidence, std::size_t scenarios);
TailFigures Tail(const std::vector<double>& pnl, double confidence);

}  // namespace zep::scenario
