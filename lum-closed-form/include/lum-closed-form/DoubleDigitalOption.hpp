// A double (range) digital as booked: `payout` in domestic currency at delivery when the spot at
// expiry ends inside [lowBarrier, highBarrier]. Times from the reference date by the day
// counter; priced in closed form under Black-Scholes or by finite differences.
#pragma once

#include "lum-time/Date.hpp"
#include "lum-time/DayCounter.hpp"

namespace zep {

class DoubleDigitalOption {
public:
    // 0 closed form; 1 finite differences (FdmDoubleDigitalEngine, 400 nodes over
    // spot * exp(+-6 sigma sqrt T), 200 time steps).
    enum PricingMethod : int { ClosedForm = 0, FiniteDifference = 1 };

    DoubleDigitalOption(const Date& referenceDate, const Date& expiryDate, const Date& deliveryDate,
                        double lowBarrier, double highBarrier, double payout, double spot, double volatility,
                        double domesticRate, double foreignRate, const DayCounter& dayCounter = DayCounter(zep::Act365Fixed));

    // An expired digital pays on spot, undiscounted.
    double Price(int pricingMethod = ClosedForm) const;
    double GetTimeToExpiry() const { return m_timeToExpiry; }
    double GetTimeToDelivery() const { return m_timeToDelivery; }

private:
    double m_lowBarrier, m_highBarrier, m_payout, m_spot, m_volatility, m_domesticRate, m_foreignRate;
    double m_timeToExpiry, m_timeToDelivery;
};

}  // namespace zep
