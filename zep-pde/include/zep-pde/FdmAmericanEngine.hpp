// An American call or put by finite differences: the Black-Scholes solver of BlackScholesFdSolver
// (Crank-Nicolson after two implicit half steps) on spots from min(spot, strike) exp(-6 sigma
// sqrt T) to max(spot, strike) exp(6 sigma sqrt T), gathered at the strike by a sinh map, with early exercise applied after every time
// step by projection: each node's value is raised to the payoff when exercising is worth more.
// The projection solves the complementarity problem exactly at each date (no iteration, so no
// tolerance to state); the error it adds is first order in the time step.
// Garman-Kohlhagen conventions with expiry and delivery taken as one date.
#pragma once

#include <string>
#include <utility>
#include <vector>

#include "zep-pde/FdmSolution.hpp"

namespace zep {

class FdmAmericanEngine {
public:
    FdmAmericanEngine(int optionType, double strike, double volatility, double timeToExpiry, double domesticRate,
                      double foreignRate, double spot, int nodes, int timeSteps,
                      const std::string& interpolation = "cubic");

    double Price() const { return m_solution.Value(m_spot); }
    // "price", "delta", "gamma" from the grid at the spot, "theta" per calendar day.
    double Greek(const std::string& name) const { return m_solution.Greek(name, m_spot); }
    // (time from today in years, critical spot) at each date, from today to the last step before
    // expiry: the highest exercised grid spot of a put, the lowest of a call; no entry for a date
    // where no node is exercised.
    const std::vector<std::pair<double, double>>& ExerciseBoundary() const { return m_boundary; }

private:
    double m_spot;
    std::vector<std::pair<double, double>> m_boundary;
    FdmSolution m_solution;
};

}  // namespace zep
