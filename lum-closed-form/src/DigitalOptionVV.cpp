#include "lum-closed-form/DigitalOptionVV.hpp"

#include <cmath>

#include "lum-auxiliary/Error.hpp"
#include "lum-closed-form/BSVanilla.hpp"
#include "lum-closed-form/DigitalOptionBS.hpp"

namespace zep {

DigitalOptionVV::DigitalOptionVV(double spot, double domesticRate, double foreignRate, double atmVolatility,
                                 double timeToExpiry, double timeToDelivery, double riskReversal25, double butterfly25,
                                 double strike, int digitalType, int deltaType, bool premiumAdjusted, double payout)
    : VannaVolgaBase(spot, domesticRate, foreignRate, atmVolatility, timeToExpiry, timeToDelivery, riskReversal25,
                     butterfly25, deltaType, premiumAdjusted),
      m_strike(strike), m_digitalType(digitalType), m_payout(payout) {
    ZEP_REQUIRE(strike > 0.0 && std::isfinite(strike), "DigitalOptionVV: strike must be positive");
    ZEP_REQUIRE(std::isfinite(payout), "DigitalOptionVV: payout must be finite");
    BuildPivots();
}

double DigitalOptionVV::SmileSlope() const {
    // Central difference: the smile is smooth between the pivots and flat beyond them.
    const double h = m_strike * 1e-5;
    return (SmileVolatility(m_strike + h) - SmileVolatility(m_strike - h)) / (2.0 * h);
}

double DigitalOptionVV::Price() const {
    if (m_digitalType < 0 || m_digitalType > 3) ZEP_FAIL("Not supported digital type!");
    const double volatility = StrikeVolatility();
    BSVanilla call(BSVanilla::Call, m_strike, volatility, m_timeToExpiry, m_timeToDelivery, m_domesticRate,
                   m_foreignRate, m_spot);
    const double bsDigital = DigitalOptionBS(0, m_strike, volatility, m_timeToExpiry, m_timeToDelivery,
                                             m_domesticRate, m_foreignRate, m_spot)
                                 .Price();
    const double cashCall = bsDigital - call.Vega() * SmileSlope();
    const double domesticDiscount = std::exp(-m_domesticRate * m_timeToDelivery);
    const double cashPut = domesticDiscount - cashCall;
    switch (m_digitalType) {
        case 0: return m_payout * cashCall;
        case 1: return m_payout * cashPut;
        case 2: return m_payout * (call.Price() + m_strike * cashCall);
        default: {
            BSVanilla put(BSVanilla::Put, m_strike, volatility, m_timeToExpiry, m_timeToDelivery, m_domesticRate,
                          m_foreignRate, m_spot);
            return m_payout * (m_strike * cashPut - put.Price());
        }
    }
}

}  // namespace zep
