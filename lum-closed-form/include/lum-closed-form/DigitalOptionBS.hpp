// Digital (binary) options under Black-Scholes with a domestic and a foreign rate: cash-or-nothing
// pays a fixed amount, asset-or-nothing one unit of the underlying, when the spot at expiry ends
// beyond the strike. Times split as in BSVanilla: T to expiry drives the volatility, Td to
// delivery the carry and the discounting.
//
// Digital types: 0 cash-or-nothing call, 1 cash-or-nothing put, 2 asset-or-nothing call,
// 3 asset-or-nothing put. Pricing methods: 0 analytic; 1 call spread, the digital replicated by
// vanillas struck kCallSpreadWidth (relative) either side of the strike, as a desk hedges it.
#pragma once

namespace zep {

enum class DigitalType : int { CashCall = 0, CashPut = 1, AssetCall = 2, AssetPut = 3 };
enum class DigitalPricingMethod : int { Analytic = 0, CallSpread = 1 };

class DigitalOptionBS {
public:
    DigitalOptionBS(int digitalType, double strike, double volatility, double timeToExpiry, double timeToDelivery,
                    double domesticRate, double foreignRate, double spot, double payout = 1.0, int pricingMethod = 0);

    // Per unit of payout times `payout`, in domestic currency, paid at delivery. An expired
    // digital is worth its undiscounted payoff on spot.
    double Price() const;
    double Delta() const;
    double Gamma() const;
    // Per unit of volatility.
    double Vega() const;
    // The change in value over one calendar day.
    double Theta() const;
    // Domestic-rate sensitivity per unit of rate, in closed form.
    double Rho() const;
    // The same sensitivity by a symmetric bump of the domestic rate, +-1 basis point.
    double ComputeRhoSym() const;

    static constexpr double kCallSpreadWidth = 1e-4;

private:
    double PriceWith(double spot, double volatility, double timeToExpiry, double timeToDelivery,
                     double domesticRate) const;
    double AnalyticPrice(double spot, double volatility, double timeToExpiry, double timeToDelivery,
                         double domesticRate) const;
    double CallSpreadPrice(double spot, double volatility, double timeToExpiry, double timeToDelivery,
                           double domesticRate) const;

    int m_digitalType;
    double m_strike;
    double m_volatility;
    double m_timeToExpiry;
    double m_timeToDelivery;
    double m_domesticRate;
    double m_foreignRate;
    double m_spot;
    double m_payout;
    int m_pricingMethod;
};

}  // namespace zep
