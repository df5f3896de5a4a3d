#include "lum-closed-form/DoubleDigitalOption.hpp"

#include <cmath>

#include "lum-auxiliary/Error.hpp"
#include "lum-closed-form/BSVanilla.hpp"
#include "lum-closed-form/NormalDistribution.hpp"
#include "zep-pde/FdmDoubleDigitalEngine.hpp"

namespace zep {

DoubleDigitalOption::DoubleDigitalOption(const Date& referenceDate, const Date& expiryDate, const Date& deliveryDate,
                                         double lowBarrier, double highBarrier, double payout, double spot,
                                         double volatility, double domesticRate, double foreignRate,
                                         const DayCounter& dayCounter)
    : m_lowBarrier(lowBarrier), m_highBarrier(highBarrier), m_payout(payout), m_spot(spot), m_volatility(volatility),
      m_domesticRate(domesticRate), m_foreignRate(foreignRate), m_timeToExpiry(0.0), m_timeToDelivery(0.0) {
    ZEP_REQUIRE(lowBarrier < highBarrier, "Low barrier must be less than high barrier");
    ZEP_REQUIRE(expiryDate >= referenceDate, "Expiry date must be on or after reference date");
    ZEP_REQUIRE(deliveryDate >= expiryDate, "Delivery date must be on or after expiry date");
    ZEP_REQUIRE(spot > 0.0 && volatility > 0.0 && std::isfinite(spot) && std::isfinite(volatility),
                "Invalid spot price, time or volatility");
    m_timeToExpiry = dayCounter.YearFraction(referenceDate, expiryDate);
    m_timeToDelivery = dayCounter.YearFraction(referenceDate, deliveryDate);
}

double DoubleDigitalOption::Price(int pricingMethod) const {
    ZEP_REQUIRE(pricingMethod == ClosedForm || pricingMethod == FiniteDifference,
                "DoubleDigitalOption: pricing method must be 0 (closed form) or 1 (finite differences)");
    if (m_timeToExpiry < BSVanilla::kExpiryThreshold)
        return m_lowBarrier <= m_spot && m_spot <= m_highBarrier ? m_payout : 0.0;
    if (pricingMethod == FiniteDifference) {
        const double reach = std::exp(6.0 * m_volatility * std::sqrt(m_timeToExpiry));
        return FdmDoubleDigitalEngine(m_spot, m_lowBarrier, m_highBarrier, m_volatility, m_timeToExpiry,
                                      m_timeToDelivery, m_domesticRate, m_foreignRate, 400, 200, m_spot / reach,
                                      m_spot * reach, m_payout)
            .Price();
    }
    const double forward = m_spot * std::exp((m_domesticRate - m_foreignRate) * m_timeToDelivery);
    const double sigmaRootT = m_volatility * std::sqrt(m_timeToExpiry);
    const auto d2 = [&](double level) { return std::log(forward / level) / sigmaRootT - sigmaRootT / 2.0; };
    // A level at or below zero is no bound at all: N(d2) -> 1.
    const double aboveLow = m_lowBarrier > 0.0 ? NormalCdf(d2(m_lowBarrier)) : 1.0;
    const double aboveHigh = NormalCdf(d2(m_highBarrier));
    return m_payout * std::exp(-m_domesticRate * m_timeToDelivery) * (aboveLow - aboveHigh);
}

}  // namespace zep
