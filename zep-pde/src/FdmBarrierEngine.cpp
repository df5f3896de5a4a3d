#include "zep-pde/FdmBarrierEngine.hpp"

#include <algorithm>
#include <cmath>

#include "lum-auxiliary/Error.hpp"
#include "lum-closed-form/BSVanilla.hpp"
#include "lum-closed-form/EuropeanBarrierBS.hpp"
#include "zep-pde/BlackScholesFdSolver.hpp"
#include "CellAveragePayoff.hpp"

namespace zep {

namespace {

bool IsDown(int type) { return type == 2 || type == 3; }
bool IsKnockIn(int type) { return type == 2 || type == 4; }

FdmSolution SolveKnockOut(int optionType, int barrierType, double strike, double barrier, double volatility,
                          double timeToExpiry, double timeToDelivery, double domesticRate, double foreignRate,
                          double spot, int nodes, int timeSteps, const std::string& interpolation) {
    ZEP_REQUIRE(nodes >= 2, "N must be >= 2.");
    ZEP_REQUIRE(timeSteps >= 1, "M must be >= 1.");
    ZEP_REQUIRE(barrierType >= 2 && barrierType <= 5, "Unsupported barrier type");
    ZEP_REQUIRE(optionType == BSVanilla::Call || optionType == BSVanilla::Put,
                "FdmBarrierEngine: option type must be 0 (call) or 1 (put)");
    ZEP_REQUIRE(spot > 0.0 && strike > 0.0 && barrier > 0.0 && volatility > 0.0 && timeToExpiry > 0.0 &&
                    timeToDelivery >= timeToExpiry,
                "FdmBarrierEngine: spot, strike, barrier, volatility and time to expiry must be positive, "
                "delivery not before expiry");
    const double reach = std::exp(6.0 * volatility * std::sqrt(timeToExpiry));
    const bool down = IsDown(barrierType);
    FdGridSpec grid{static_cast<std::size_t>(nodes), static_cast<std::size_t>(timeSteps),
                    down ? barrier : std::min(spot, strike) / reach, down ? std::max(spot, strike) * reach : barrier};
    ZEP_REQUIRE(grid.spotMax > grid.spotMin, "Invalid domain, Smax <= Smin!");
    (down ? grid.lower : grid.upper) = FdBoundary::Held;
    const double h = (grid.spotMax - grid.spotMin) / static_cast<double>(grid.nodes - 1);
    const double phi = optionType == BSVanilla::Call ? 1.0 : -1.0;
    std::vector<double> values(grid.nodes);
    for (std::size_t i = 0; i < grid.nodes; ++i) {
        const double s = grid.spotMin + h * static_cast<double>(i);
        const double from = std::max(s - h / 2.0, grid.spotMin), to = std::min(s + h / 2.0, grid.spotMax);
        values[i] = detail::CellAveragePayoff(phi, strike, from, to);
    }
    values[down ? 0 : grid.nodes - 1] = 0.0;  // knocked out at the barrier, no rebate
    const double drift = (domesticRate - foreignRate) * timeToDelivery / timeToExpiry;
    const BlackScholesFdSolver solver(grid, volatility, drift, timeToExpiry);
    std::vector<double> later;
    solver.Roll(values, nullptr, &later);
    return FdmSolution(solver.Spots(), std::move(values), std::move(later), solver.TimeStep(),
                       std::exp(-domesticRate * timeToDelivery), interpolation);
}

}  // namespace

FdmBarrierEngine::FdmBarrierEngine(int optionType, int barrierType, double strike, double barrier, double volatility,
                                   double timeToExpiry, double timeToDelivery, double domesticRate,
                                   double foreignRate, double spot, int nodes, int timeSteps,
                                   const std::string& interpolation)
    : m_optionType(optionType), m_barrierType(barrierType), m_spot(spot),
      m_vanilla(BSVanilla(optionType, strike, volatility, timeToExpiry, timeToDelivery, domesticRate, foreignRate,
                          spot)
                    .Price()),
      m_knocked(IsDown(barrierType) ? spot <= barrier : spot >= barrier),
      m_knockOut(SolveKnockOut(optionType, IsKnockIn(barrierType) ? barrierType + 1 : barrierType, strike, barrier,
                               volatility, timeToExpiry, timeToDelivery, domesticRate, foreignRate, spot, nodes,
                               timeSteps, interpolation)) {}

double FdmBarrierEngine::Price() const {
    const double knockOut = m_knocked ? 0.0 : m_knockOut.Value(m_spot);
    return IsKnockIn(m_barrierType) ? m_vanilla - knockOut : knockOut;
}

double FdmBarrierEngine::Greek(const std::string& name) const { return m_knockOut.Greek(name, m_spot); }

}  // namespace zep
