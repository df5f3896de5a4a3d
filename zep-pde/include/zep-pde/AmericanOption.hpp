// An American call or put priced by an engine chosen by name: "fd" (finite differences,
// FdmAmericanEngine, `nodes` x `timeSteps`), "baw" (Barone-Adesi-Whaley), "bjerksund-stensland"
// (Bjerksund-Stensland 2002) or "binomial" (Leisen-Reimer tree of `timeSteps` steps).
// Garman-Kohlhagen conventions, expiry and delivery as one date.
#pragma once

#include <string>
#include <utility>
#include <vector>

namespace zep {

class AmericanOption {
public:
    AmericanOption(int optionType, double strike, double volatility, double timeToExpiry, double domesticRate,
                   double foreignRate, double spot);

    double Price(const std::string& engine = "fd", int nodes = 200, int timeSteps = 200) const;
    // The European option of the same terms (Black-Scholes), for the early-exercise premium.
    double EuropeanPrice() const;
    // (time from today in years, critical spot) from the finite-difference grid.
    std::vector<std::pair<double, double>> ExerciseBoundary(int nodes = 200, int timeSteps = 200) const;

private:
    int m_optionType;
    double m_strike, m_volatility, m_timeToExpiry, m_domesticRate, m_foreignRate, m_spot;
};

}  // namespace zep
