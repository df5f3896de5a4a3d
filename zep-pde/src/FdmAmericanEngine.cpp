#include "zep-pde/FdmAmericanEngine.hpp"

#include <algorithm>
#include <cmath>

#include "lum-auxiliary/Error.hpp"
#include "lum-closed-form/BSVanilla.hpp"
#include "zep-pde/BlackScholesFdSolver.hpp"

namespace zep {
namespace {

// Beyond this a grid is a mistake, not a finer price: refused before allocating it.
constexpr int kMaxGridSize = 100000;
// Nodes gather at the strike, where the payoff's kink and the exercise boundary lie.
constexpr double kStrikeConcentration = 0.05;

FdmSolution Solve(int optionType, double strike, double volatility, double t, double rd, double rf, double spot,
                  int nodes, int timeSteps, const std::string& interpolation,
                  std::vector<std::pair<double, double>>& boundary) {
    ZEP_REQUIRE(nodes >= 5 && nodes <= kMaxGridSize, "FdmAmericanEngine: the grid needs at least 5 spot nodes, at most 100000");
    ZEP_REQUIRE(timeSteps >= 2 && timeSteps <= kMaxGridSize,
                "FdmAmericanEngine: the grid needs at least 2 time steps, at most 100000");
    ZEP_REQUIRE(optionType == BSVanilla::Call || optionType == BSVanilla::Put,
                "FdmAmericanEngine: option type must be 0 (call) or 1 (put)");
    ZEP_REQUIRE(spot > 0.0 && strike > 0.0 && volatility > 0.0 && t > 0.0 && std::isfinite(spot) &&
                    std::isfinite(strike) && std::isfinite(volatility) && std::isfinite(t) && std::isfinite(rd) &&
                    std::isfinite(rf),
                "FdmAmericanEngine: spot, strike, volatility and time to expiry must be finite and positive, "
                "rates finite");
    const double reach = std::exp(6.0 * volatility * std::sqrt(t));
    FdGridSpec grid{static_cast<std::size_t>(nodes), static_cast<std::size_t>(timeSteps),
                    std::min(spot, strike) / reach, std::max(spot, strike) * reach};
    grid.concentration = kStrikeConcentration;
    grid.centre = strike;
    const BlackScholesFdSolver solver(grid, volatility, rd - rf, t);
    const std::vector<double>& spots = solver.Spots();
    const double phi = optionType == BSVanilla::Call ? 1.0 : -1.0;
    std::vector<double> intrinsic(spots.size()), values(spots.size());
    for (std::size_t i = 0; i < spots.size(); ++i) intrinsic[i] = values[i] = std::max(phi * (spots[i] - strike), 0.0);
    const double dt = solver.TimeStep();
    boundary.clear();
    boundary.reserve(static_cast<std::size_t>(timeSteps));
    // The solver rolls undiscounted values U = V e^(rd (T - t)): exercise pays intrinsic e^(rd (T - t)).
    const auto exercise = [&](std::size_t step, std::vector<double>& u) {
        const double time = dt * static_cast<double>(step);
        const double growth = std::exp(rd * (t - time));
        double critical = NAN;
        for (std::size_t i = 0; i < u.size(); ++i) {
            const double exercised = intrinsic[i] * growth;
            if (exercised > 0.0 && exercised >= u[i]) {
                u[i] = exercised;
                if (phi < 0.0 || std::isnan(critical)) critical = spots[i];
            }
        }
        if (!std::isnan(critical)) boundary.emplace_back(time, critical);
    };
    std::vector<double> later;
    solver.Roll(values, exercise, &later);
    std::reverse(boundary.begin(), boundary.end());
    return FdmSolution(spots, std::move(values), std::move(later), dt, std::exp(-rd * t), interpolation);
}

}  // namespace

FdmAmericanEngine::FdmAmericanEngine(int optionType, double strike, double volatility, double timeToExpiry,
                                     double domesticRate, double foreignRate, double spot, int nodes, int timeSteps,
                                     const std::string& interpolation)
    : m_spot(spot),
      m_solution(Solve(optionType, strike, volatility, timeToExpiry, domesticRate, foreignRate, spot, nodes,
                       timeSteps, interpolation, m_boundary)) {}

}  // namespace zep
