// A digital (binary) option as a desk books it: side, payout, strike, the trade's dates and its
// market (two rates and a volatility source: one volatility or a smile surface).
//
// Digital types are those of DigitalOptionBS (0 cash call, 1 cash put, 2 asset call, 3 asset
// put). Pricing methods:
// | code | method |
// |---|---|
// | 0 | ANALYTIC: the Black-Scholes digital at the volatility the source gives at the strike |
// | 1 | CALLSPREAD: the same replicated by vanillas either side of the strike |
// | 2 | SMILE: the smile-consistent digital, the strike derivative of the vanilla price on the smile |
//
// The smile-consistent cash call is -dC(K, sigma(K))/dK = the Black-Scholes digital at sigma(K)
// minus the vanilla vega times the smile slope sigma'(K); the cash put is dP/dK, the same with
// the vega added. Asset digitals follow from the cash ones and the vanilla by parity: an asset
// call is C + K times the cash call, an asset put K times the cash put minus P. On a flat source
// the slope is zero and the method gives the Black-Scholes digital. The slope is a central
// difference of the source over a relative strike step of kSmileSlopeStep.
//
// The Greeks are the Black-Scholes ones at the strike's volatility (sticky strike).
#pragma once

#include <boost/shared_ptr.hpp>

#include "lum-closed-form/DigitalOptionBS.hpp"
#include "lum-closed-form/VolatilitySource.hpp"
#include "lum-time/Date.hpp"
#include "lum-time/DayCounter.hpp"

namespace zep {

class DigitalOption {
public:
    enum PricingMethod : int { Analytic = 0, CallSpread = 1, Smile = 2 };

    struct Terms {
        int buySell = 1;      // +1 buy, -1 sell
        int digitalType = 0;  // DigitalType codes
        double payout = 1.0;  // cash amount, or units of the underlying for asset digitals
        double strike = 0.0;
        Date referenceDate, expiryDate, deliveryDate;
        DayCounter dayCounter = DayCounter(Act365Fixed);
    };

    DigitalOption(const Terms& terms, double spot, double domesticRate, double foreignRate,
                  boost::shared_ptr<const VolatilitySource> volatility);

    // The long digital in domestic currency paid at delivery; an expired one is its payoff on spot.
    double Price(int pricingMethod = Analytic) const;
    // side * Price.
    double PV(int pricingMethod = Analytic) const;
    double Delta() const;
    double Gamma() const;
    double Vega() const;
    double Theta() const;
    double Rho() const;

    // The same trade on a market whose spot is `spot` and whose volatilities are all
    // `volatilityShift` higher (the smile quotes keep their shape), for scenarios and bumped risk.
    DigitalOption OnMovedMarket(double spot, double volatilityShift) const;
    double GetSpot() const { return m_spot; }
    double GetTimeToExpiry() const { return m_timeToExpiry; }
    double GetTimeToDelivery() const { return m_timeToDelivery; }
    double GetVolatility() const { return m_volatility; }

    static constexpr double kSmileSlopeStep = 1e-4;

private:
    DigitalOptionBS Engine(int pricingMethod) const;
    double SmilePrice() const;

    Terms m_terms;
    double m_spot, m_domesticRate, m_foreignRate;
    boost::shared_ptr<const VolatilitySource> m_source;
    double m_timeToExpiry, m_timeToDelivery, m_volatility;
};

}  // namespace zep
