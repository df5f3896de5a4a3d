#include "RangeEngines.hpp"

#include <algorithm>
#include <cmath>

namespace zep::detail {

std::vector<double> CellShareInside(const std::vector<double>& spots, double low, double high) {
    const double h = spots[1] - spots[0];
    std::vector<double> share(spots.size());
    for (std::size_t i = 0; i < spots.size(); ++i) {
        const double from = std::max(spots[i] - h / 2.0, low), to = std::min(spots[i] + h / 2.0, high);
        share[i] = std::max(to - from, 0.0) / h;
    }
    return share;
}

FdmSolution SolveRange(const FdGridSpec& grid, double volatility, double timeToExpiry, double timeToDelivery,
                       double domesticRate, double foreignRate, std::vector<double> payoff, double observedShare,
                       const std::vector<double>& inside, const std::string& interpolation) {
    // Carry to the delivery forward over the life to expiry, discounting to delivery.
    const double drift = (domesticRate - foreignRate) * timeToDelivery / timeToExpiry;
    const BlackScholesFdSolver solver(grid, volatility, drift, timeToExpiry);
    std::vector<double> later;
    solver.Roll(
        payoff,
        [&](std::size_t step, std::vector<double>& values) {
            if (observedShare == 0.0 || step == 0) return;  // nothing observed today
            for (std::size_t i = 0; i < values.size(); ++i) values[i] += observedShare * inside[i];
        },
        &later);
    return FdmSolution(solver.Spots(), std::move(payoff), std::move(later), solver.TimeStep(),
                       std::exp(-domesticRate * timeToDelivery), interpolation);
}

}  // namespace zep::detail
