#include "zep-pde/AmericanOption.hpp"

#include "lum-auxiliary/Error.hpp"
#include "lum-closed-form/BSVanilla.hpp"
#include "lum-closed-form/BaroneAdesiWhaley.hpp"
#include "lum-closed-form/BjerksundStensland.hpp"
#include "lum-closed-form/LeisenReimerTree.hpp"
#include "zep-pde/FdmAmericanEngine.hpp"

namespace zep {

AmericanOption::AmericanOption(int optionType, double strike, double volatility, double timeToExpiry,
                               double domesticRate, double foreignRate, double spot)
    : m_optionType(optionType), m_strike(strike), m_volatility(volatility), m_timeToExpiry(timeToExpiry),
      m_domesticRate(domesticRate), m_foreignRate(foreignRate), m_spot(spot) {
    // The Black-Scholes engine checks every term the American engines share.
    [[maybe_unused]] const BSVanilla checked(optionType, strike, volatility, timeToExpiry, timeToExpiry, domesticRate,
                                             foreignRate, spot);
    ZEP_REQUIRE(spot > 0.0, "spot must be > 0");
}

double AmericanOption::Price(const std::string& engine, int nodes, int timeSteps) const {
    if (engine == "baw")
        return BaroneAdesiWhaleyPrice(m_optionType, m_strike, m_volatility, m_timeToExpiry, m_domesticRate,
                                      m_foreignRate, m_spot);
    if (engine == "bjerksund-stensland")
        return BjerksundStenslandPrice(m_optionType, m_strike, m_volatility, m_timeToExpiry, m_domesticRate,
                                       m_foreignRate, m_spot);
    if (engine == "binomial")
        return LeisenReimerPrice(m_optionType, m_strike, m_volatility, m_timeToExpiry, m_domesticRate, m_foreignRate,
                                 m_spot, timeSteps, true);
    if (engine == "fd") {
        if (m_timeToExpiry < BSVanilla::kExpiryThreshold) return EuropeanPrice();
        return FdmAmericanEngine(m_optionType, m_strike, m_volatility, m_timeToExpiry, m_domesticRate, m_foreignRate,
                                 m_spot, nodes, timeSteps)
            .Price();
    }
    ZEP_FAIL("unknown American engine '" + engine + "': use 'fd', 'baw', 'bjerksund-stensland' or 'binomial'");
}

double AmericanOption::EuropeanPrice() const {
    return BSVanilla(m_optionType, m_strike, m_volatility, m_timeToExpiry, m_timeToExpiry, m_domesticRate,
                     m_foreignRate, m_spot)
        .Price();
}

std::vector<std::pair<double, double>> AmericanOption::ExerciseBoundary(int nodes, int timeSteps) const {
    ZEP_REQUIRE(m_timeToExpiry >= BSVanilla::kExpiryThreshold, "an expired option has no exercise boundary");
    return FdmAmericanEngine(m_optionType, m_strike, m_volatility, m_timeToExpiry, m_domesticRate, m_foreignRate,
                             m_spot, nodes, timeSteps)
        .ExerciseBoundary();
}

}  // namespace zep
