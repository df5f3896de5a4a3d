// A vanilla payoff averaged over a node's cell: the kink at the strike then enters the grid at
// second order wherever it falls between nodes, instead of shifting the strike by up to a cell.
#pragma once

#include <algorithm>

namespace zep::detail {

// The mean of (phi (S - K))+ over [from, to]: phi ((phi (S - K))+)^2 / 2 is its antiderivative.
inline double CellAveragePayoff(double phi, double strike, double from, double to) {
    const auto antiderivative = [&](double s) {
        const double inTheMoney = std::max(phi * (s - strike), 0.0);
        return phi * inTheMoney * inTheMoney / 2.0;
    };
    return (antiderivative(to) - antiderivative(from)) / (to - from);
}

}  // namespace zep::detail
