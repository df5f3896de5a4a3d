// What the range engines share: the fraction of each node's cell that lies inside a range, and
// the solution of a product that pays such indicators.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "zep-pde/BlackScholesFdSolver.hpp"
#include "zep-pde/FdmSolution.hpp"

namespace zep::detail {

// For each node, the share of [S - h/2, S + h/2] inside [low, high].
std::vector<double> CellShareInside(const std::vector<double>& spots, double low, double high);

// Rolls the payoff back; `observe` adds each step's accrual (see BlackScholesFdSolver::Roll).
FdmSolution SolveRange(const FdGridSpec& grid, double volatility, double timeToExpiry, double timeToDelivery,
                       double domesticRate, double foreignRate, std::vector<double> payoff, double observedShare,
                       const std::vector<double>& inside, const std::string& interpolation);

}  // namespace zep::detail
