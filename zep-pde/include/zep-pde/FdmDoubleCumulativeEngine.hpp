// A daily range accrual by finite differences: at each of the M time steps the product accrues
// payout / M if the spot closes inside [L, H], the total paid at delivery. Built for day-by-day
// observation, so that M should equal the number of trading days to expiry; another M observes
// at every step all the same and says so in the log.
#pragma once

#include <string>

#include "zep-pde/FdmSolution.hpp"

namespace zep {

class FdmDoubleCumulativeEngine {
public:
    FdmDoubleCumulativeEngine(double spot, double barrierLow, double barrierHigh, double volatility,
                              double timeToExpiry, double timeToDelivery, double domesticRate, double foreignRate,
                              int nodes, int timeSteps, double spotMin, double spotMax, int tradingDays,
                              double payout = 1.0, const std::string& interpolation = "linear");

    double Price() const { return m_solution.Value(m_spot); }
    double Greek(const std::string& name) const { return m_solution.Greek(name, m_spot); }

private:
    double m_spot;
    FdmSolution m_solution;
};

}  // namespace zep
