// A barrier option priced the way FX desks correct Black-Scholes for the smile: the knock-out at
// the at-the-money volatility, plus the market cost of its vega, vanna and volga read off three
// pivots (ATM, 25-delta risk reversal, 25-delta butterfly), scaled by the probability that no
// barrier is touched. Knock-ins follow by parity against the smile-priced vanilla.
//
// Delta conventions of the 25-delta pivot strikes: deltaType 0 spot, 1 forward; with
// premiumAdjusted the premium-included delta of the same kind.
//
// The smile of the knock-in's vanilla leg: the three pivots (K_25p, sigma_25p), (K_atm,
// sigma_atm), (K_25c, sigma_25c) joined by the parabola in ln(K / K_atm) through them, flat in
// volatility beyond the 25-delta strikes.
//
// Tracing: SetTrace(true), or ZEP_VV_TRACE=1 in the environment when the object is built, writes
// every intermediate of a pricing to the logger at info level.
#pragma once

#include <array>
#include <string>

#include "lum-closed-form/EuropeanBarrierBS.hpp"

namespace zep {

class VannaVolgaBase {
public:
    virtual ~VannaVolgaBase() = default;

    // The at-the-money, 25-delta call and 25-delta put pivots of the expiry.
    struct Pivots {
        double strikeATM = 0.0, strike25Call = 0.0, strike25Put = 0.0;
        double vol25Call = 0.0, vol25Put = 0.0;
    };
    // Per pivot instrument (ATM, RR, BF): its vega, vanna and volga at sigma_atm.
    using GreekMatrix = std::array<std::array<double, 3>, 3>;
    using Vector3 = std::array<double, 3>;

    void SetTrace(bool on) { m_trace = on; }

protected:
    VannaVolgaBase(double spot, double domesticRate, double foreignRate, double atmVolatility, double timeToExpiry,
                   double timeToDelivery, double riskReversal25, double butterfly25, int deltaType,
                   bool premiumAdjusted);

    // Pivot volatilities and strikes, the Greek matrix at sigma_atm, the costs Y and the
    // weights Omega solving GreekMatrix * Omega = Y.
    void BuildPivots();
    // The volatility of the knock-in's vanilla leg at a strike.
    double SmileVolatility(double strike) const;
    void Trace(const std::string& line) const;

    double m_spot, m_domesticRate, m_foreignRate, m_atmVolatility, m_timeToExpiry, m_timeToDelivery;
    double m_riskReversal25, m_butterfly25;
    int m_deltaType;
    bool m_premiumAdjusted;
    bool m_trace;

    Pivots m_pivots;
    GreekMatrix m_greeks{};
    // Per pivot instrument (ATM, RR, BF): its price at market volatilities and at sigma_atm.
    Vector3 m_pivotPricesMarket{};
    Vector3 m_pivotPricesATM{};
    Vector3 m_costs{};  // Y
    Vector3 m_omega{};
};

class EuropeanBarrierVV_Fisher : public VannaVolgaBase {
public:
    // One barrier (types 2 to 5, see EuropeanBarrierBS).
    EuropeanBarrierVV_Fisher(double spot, double domesticRate, double foreignRate, double atmVolatility,
                             double timeToExpiry, double timeToDelivery, double riskReversal25, double butterfly25,
                             double strike, int optionType, int barrierType, double barrier, int deltaType,
                             bool premiumAdjusted);
    // A corridor (DOUBLE_KNOCK_IN, DOUBLE_KNOCK_OUT).
    EuropeanBarrierVV_Fisher(double spot, double domesticRate, double foreignRate, double atmVolatility,
                             double timeToExpiry, double timeToDelivery, double riskReversal25, double butterfly25,
                             double strike, int optionType, int barrierType, double barrierLow, double barrierUp,
                             int deltaType, bool premiumAdjusted);

    // The knock-out value (of the knock-out twin for a knock-in type): P0 + lambda * adjustment.
    double priceKO_Fisher() const;
    // vanilla_smile - KO_VV, for knock-in types only.
    double priceKI_Fisher() const;
    // The option's own value: priceKI_Fisher for knock-ins, priceKO_Fisher otherwise.
    double Price() const;
    // Price times 10000.
    double PriceInPips() const { return Price() * 10000.0; }

    // The probability that no barrier is touched before expiry, as the adjustment scales it.
    double SurvivalProbability() const;
    const Pivots& GetPivots() const { return m_pivots; }
    const Vector3& GetOmega() const { return m_omega; }
    const Vector3& GetCosts() const { return m_costs; }

    // Bumps of the knock-out's Black-Scholes price for its vega, vanna and volga.
    static constexpr double kVolatilityBump = 1e-4;
    static constexpr double kRelativeSpotBump = 1e-4;

private:
    double KnockOutBS(double spot, double volatility) const;
    int KnockOutType() const;

    double m_strike;
    int m_optionType;
    int m_barrierType;
    double m_barrier;  // single barrier, or 0 for a corridor
    double m_barrierLow, m_barrierUp;
};

}  // namespace zep
