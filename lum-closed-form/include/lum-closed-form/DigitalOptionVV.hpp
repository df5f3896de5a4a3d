// The smile-consistent digital: a cash digital is minus the strike derivative of the vanilla, so
// on a smile it is the Black-Scholes digital at the strike's volatility minus the vanilla's vega
// times the slope of the smile there, -dC/dK = DFd N(d2) - Vega(K) dsigma/dK. The smile is the
// three-pivot one of VannaVolgaBase (ATM, 25-delta risk reversal and butterfly). Asset digitals
// follow from S 1{S > K} = (S - K)+ + K 1{S > K} and its put mirror, the vanilla at the smile.
#pragma once

#include "lum-closed-form/EuropeanBarrierVV_Fisher.hpp"

namespace zep {

class DigitalOptionVV : public VannaVolgaBase {
public:
    // digitalType as DigitalOptionBS (0 cash call, 1 cash put, 2 asset call, 3 asset put).
    DigitalOptionVV(double spot, double domesticRate, double foreignRate, double atmVolatility, double timeToExpiry,
                    double timeToDelivery, double riskReversal25, double butterfly25, double strike, int digitalType,
                    int deltaType, bool premiumAdjusted, double payout = 1.0);

    double Price() const;
    // The smile's volatility at the strike and its slope dsigma/dK there.
    double StrikeVolatility() const { return SmileVolatility(m_strike); }
    double SmileSlope() const;

private:
    double m_strike;
    int m_digitalType;
    double m_payout;
};

}  // namespace zep
