// A European range digital by finite differences: `payout` at delivery when the spot at expiry
// ends inside [L, H]. The payoff is averaged over each node's cell, which keeps the scheme second
// order in space despite the jumps at L and H.
#pragma once

#include <string>

#include "zep-pde/FdmSolution.hpp"

namespace zep {

class FdmDoubleDigitalEngine {
public:
    FdmDoubleDigitalEngine(double spot, double barrierLow, double barrierHigh, double volatility, double timeToExpiry,
                           double timeToDelivery, double domesticRate, double foreignRate, int nodes, int timeSteps,
                           double spotMin, double spotMax, double payout = 1.0,
                           const std::string& interpolation = "linear");

    double Price() const { return m_solution.Value(m_spot); }
    double Greek(const std::string& name) const { return m_solution.Greek(name, m_spot); }

private:
    double m_spot;
    FdmSolution m_solution;
};

}  // namespace zep
