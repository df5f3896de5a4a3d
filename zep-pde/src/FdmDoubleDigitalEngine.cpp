#include "zep-pde/FdmDoubleDigitalEngine.hpp"

#include <cmath>

#include "RangeEngines.hpp"
#include "lum-auxiliary/Error.hpp"

namespace zep {

namespace {

FdmSolution Solve(double barrierLow, double barrierHigh, double volatility, double timeToExpiry,
                  double timeToDelivery, double domesticRate, double foreignRate, int nodes, int timeSteps,
                  double spotMin, double spotMax, double payout, const std::string& interpolation) {
    ZEP_REQUIRE(barrierLow < barrierHigh, "FdmDoubleDigitalEngine: L must be < H");
    ZEP_REQUIRE(nodes >= 2, "FdmDoubleDigitalEngine: N must be >= 2");
    ZEP_REQUIRE(timeSteps >= 1, "FdmDoubleDigitalEngine: M must be >= 1");
    ZEP_REQUIRE(spotMax > spotMin, "Invalid domain, Smax <= Smin!");
    ZEP_REQUIRE(volatility > 0.0 && timeToExpiry > 0.0 && timeToDelivery >= timeToExpiry,
                "FdmDoubleDigitalEngine: volatility and time to expiry must be positive, delivery not before expiry");
    const FdGridSpec grid{static_cast<std::size_t>(nodes), static_cast<std::size_t>(timeSteps), spotMin, spotMax};
    std::vector<double> spots(grid.nodes);
    for (std::size_t i = 0; i < grid.nodes; ++i)
        spots[i] = spotMin + (spotMax - spotMin) * static_cast<double>(i) / static_cast<double>(grid.nodes - 1);
    std::vector<double> payoff = detail::CellShareInside(spots, barrierLow, barrierHigh);
    for (double& value : payoff) value *= payout;
    return detail::SolveRange(grid, volatility, timeToExpiry, timeToDelivery, domesticRate, foreignRate,
                              std::move(payoff), 0.0, {}, interpolation);
}

}  // namespace

FdmDoubleDigitalEngine::FdmDoubleDigitalEngine(double spot, double barrierLow, double barrierHigh, double volatility,
                                               double timeToExpiry, double timeToDelivery, double domesticRate,
                                               double foreignRate, int nodes, int timeSteps, double spotMin,
                                               double spotMax, double payout, const std::string& interpolation)
    : m_spot(spot),
      m_solution(Solve(barrierLow, barrierHigh, volatility, timeToExpiry, timeToDelivery, domesticRate, foreignRate,
                       nodes, timeSteps, spotMin, spotMax, payout, interpolation)) {}

}  // namespace zep
