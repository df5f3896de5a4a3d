#include "zep-pde/FdmDoubleCumulativeEngine.hpp"

#include "RangeEngines.hpp"
#include "lum-auxiliary/Error.hpp"
#include "lum-auxiliary/Logger.hpp"

namespace zep {

namespace {

FdmSolution Solve(double barrierLow, double barrierHigh, double volatility, double timeToExpiry,
                  double timeToDelivery, double domesticRate, double foreignRate, int nodes, int timeSteps,
                  double spotMin, double spotMax, int tradingDays, double payout, const std::string& interpolation) {
    ZEP_REQUIRE(nodes >= 2, "N must be >= 2.");
    ZEP_REQUIRE(timeSteps >= 1, "M must be >= 1.");
    ZEP_REQUIRE(spotMax > spotMin, "Invalid domain, Smax <= Smin!");
    ZEP_REQUIRE(barrierLow < barrierHigh, "FdmDoubleCumulativeEngine: L must be < H");
    ZEP_REQUIRE(volatility > 0.0 && timeToExpiry > 0.0 && timeToDelivery >= timeToExpiry,
                "FdmDoubleCumulativeEngine: volatility and time to expiry must be positive, delivery not before expiry");
    if (timeSteps != tradingDays) {
        Logger().warn("[FdmDoubleCumulativeEngine] WARNING: M_ != tradingDays_!");
        Logger().warn("  For day-by-day cumulative logic, best set M = tradingDays.");
    }
    const FdGridSpec grid{static_cast<std::size_t>(nodes), static_cast<std::size_t>(timeSteps), spotMin, spotMax};
    std::vector<double> spots(grid.nodes);
    for (std::size_t i = 0; i < grid.nodes; ++i)
        spots[i] = spotMin + (spotMax - spotMin) * static_cast<double>(i) / static_cast<double>(grid.nodes - 1);
    const std::vector<double> inside = detail::CellShareInside(spots, barrierLow, barrierHigh);
    const double share = payout / timeSteps;
    std::vector<double> payoff(inside.size());
    for (std::size_t i = 0; i < inside.size(); ++i) payoff[i] = share * inside[i];  // the expiry's own close
    return detail::SolveRange(grid, volatility, timeToExpiry, timeToDelivery, domesticRate, foreignRate,
                              std::move(payoff), share, inside, interpolation);
}

}  // namespace

FdmDoubleCumulativeEngine::FdmDoubleCumulativeEngine(double spot, double barrierLow, double barrierHigh,
                                                     double volatility, double timeToExpiry, double timeToDelivery,
                                                     double domesticRate, double foreignRate, int nodes,
                                                     int timeSteps, double spotMin, double spotMax, int tradingDays,
                                                     double payout, const std::string& interpolation)
    : m_spot(spot),
      m_solution(Solve(barrierLow, barrierHigh, volatility, timeToExpiry, timeToDelivery, domesticRate, foreignRate,
                       nodes, timeSteps, spotMin, spotMax, tradingDays, payout, interpolation)) {}

}  // namespace zep
