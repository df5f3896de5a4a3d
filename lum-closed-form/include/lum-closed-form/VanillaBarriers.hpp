// A European barrier option as a desk books it: side, notional, strike, barrier(s), the trade's
// dates and its market, priced by the method asked for.
//
// Pricing methods (codes):
// | code | method | |
// |---|---|---|
// | 0 | BLACKSCHOLES: EuropeanBarrierBS at the volatility the source gives at the strike | |
// | 1 | VANNAVOLGA: EuropeanBarrierVV_Fisher on the smile quotes (ATM from the source) | single barriers and corridors |
// | 2 | FINITEDIFFERENCE: FdmBarrierEngine, 400 nodes by 400 steps | single barriers only |
// | 3 | BSREPLICATE | refused: "BSREPLICATE not supported for VanillaBarrier!" |
// Any other code fails "PricingMethod not supported for VanillaBarrier!".
#pragma once

#include <optional>
#include <string>

#include <boost/shared_ptr.hpp>

#include "lum-closed-form/VolatilitySource.hpp"
#include "lum-time/Date.hpp"
#include "lum-time/DayCounter.hpp"

namespace zep {

class VanillaBarriers {
public:
    enum PricingMethod : int { BlackScholes = 0, VannaVolga = 1, FiniteDifference = 2, BSReplicate = 3 };

    struct Terms {
        int buySell = 1;  // +1 buy, -1 sell
        int callPut = 0;  // 0 call, 1 put
        double faceValue = 1.0;
        double strike = 0.0;
        int barrierType = 3;  // EuropeanBarrierBS codes
        double barrier = 0.0;    // the single barrier, or the corridor's lower level
        double barrierUp = 0.0;  // the corridor's upper level (types 6 and 7)
        Date referenceDate, expiryDate, settlementDate, premiumDate, deliveryDate;
        DayCounter dayCounter = DayCounter(Act365Fixed);
    };
    // The quotes of the expiry for Vanna-Volga. Without an ATM volatility the source's volatility
    // at the forward serves.
    struct SmileQuotes {
        double riskReversal25 = 0.0;
        double butterfly25 = 0.0;
        int deltaType = 0;
        bool premiumAdjusted = false;
        std::optional<double> atmVolatility;
    };

    VanillaBarriers(const Terms& terms, double spot, double domesticRate, double foreignRate,
                    boost::shared_ptr<const VolatilitySource> volatility, std::optional<SmileQuotes> smile = {});

    // Per unit of underlying, for the long option, in domestic currency paid at delivery.
    double Price(int pricingMethod = BlackScholes) const;
    // side * face value * Price.
    double PV(int pricingMethod = BlackScholes) const;
    // Bumped risk of Price to a market field; only "spot_Volatility" (an additive parallel shift
    // of the volatility) is known: (P(sigma + bump) - P(sigma - bump)) / (2 bump).
    double DeltaPrice(const std::string& fieldName, double bump, int pricingMethod = BlackScholes) const;

    // The same trade on a market whose spot is `spot`, whose volatilities are all
    // `volatilityShift` higher and whose 25-delta risk reversal and butterfly quotes (when it has
    // them) are moved by the last two shifts, for scenarios and bumped risk.
    VanillaBarriers OnMovedMarket(double spot, double volatilityShift, double riskReversal25Shift = 0.0,
                                  double butterfly25Shift = 0.0) const;
    double GetSpot() const { return m_spot; }
    // The volatility the source gives at the strike and expiry (the Black-Scholes method's).
    double GetVolatility() const { return m_volatility->Volatility(m_terms.strike, m_timeToExpiry); }
    double GetTimeToExpiry() const { return m_timeToExpiry; }
    double GetTimeToDelivery() const { return m_timeToDelivery; }

private:
    double PriceAt(double volatilityShift, int pricingMethod) const;

    Terms m_terms;
    double m_spot, m_domesticRate, m_foreignRate;
    boost::shared_ptr<const VolatilitySource> m_volatility;
    std::optional<SmileQuotes> m_smile;
    double m_timeToExpiry, m_timeToDelivery;
};

}  // namespace zep
