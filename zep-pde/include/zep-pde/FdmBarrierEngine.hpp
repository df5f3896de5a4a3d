// A single-barrier European option by finite differences: the knock-out on a grid that ends at
// the barrier, where its value is held at zero, and runs to spot * exp(+-6 sigma sqrt T) on the
// other side (no gamma there); the knock-in by parity with the Black-Scholes vanilla. Payoffs are
// averaged over each node's cell, so the price converges at second order in the spot step.
// Barrier types and the FX split of expiry and delivery as EuropeanBarrierBS.
#pragma once

#include <string>

#include "zep-pde/FdmSolution.hpp"

namespace zep {

class FdmBarrierEngine {
public:
    FdmBarrierEngine(int optionType, int barrierType, double strike, double barrier, double volatility,
                     double timeToExpiry, double timeToDelivery, double domesticRate, double foreignRate, double spot,
                     int nodes, int timeSteps, const std::string& interpolation = "linear");

    double Price() const;
    // Greeks of the knock-out leg from the grid ("price", "delta", "gamma", "theta"); a knock-in
    // has the vanilla's added by parity only in Price.
    double Greek(const std::string& name) const;

private:
    int m_optionType;
    int m_barrierType;
    double m_spot;
    double m_vanilla;  // for the knock-in's parity
    bool m_knocked;
    FdmSolution m_knockOut;
};

}  // namespace zep
