// A European call or put under Black-Scholes in its Garman-Kohlhagen form: a domestic and a
// foreign continuously compounded rate, so that FX and equity with a dividend yield share one
// formula. The engine caches every intermediate once and reads them in each Greek.
//
// At the edges of the market (volatilities of 1e-8, expiries of 1e-10 years, rates of +-50%,
// spots from 1e-300 to 1e300) every figure is a finite number or raises: a product with a normal
// density or probability is formed tail first, so that a tail that has vanished gives zero rather
// than inf * 0, and a figure whose true value lies beyond double precision (the gamma of an
// at-the-money option on a spot of 1e-300) raises a zep::Error naming the figure and the market
// instead of returning inf or NaN: a clamped figure would be a wrong number that looks right.
// Strikes must be positive; spots, forwards, times and rates finite.
#pragma once

#include <string>

#include "lum-auxiliary/SourceLine.hpp"

namespace zep {

// How a delta is quoted: against spot or forward, plain or premium-adjusted (premium paid in the
// underlying, as FX markets quote it for pairs whose premium currency is the foreign one).
enum class DeltaKind : int { Spot = 0, SpotPremiumAdjusted = 1, Forward = 2, ForwardPremiumAdjusted = 3 };

class BSVanilla {
public:
    static constexpr int Call = 0;
    static constexpr int Put = 1;
    // Volatilities below this are refused; times to expiry below it mean an expired option.
    static constexpr double kMinimumVolatility = 1e-10;
    static constexpr double kExpiryThreshold = 1e-10;
    // A spot of -1 given with a forward asks the engine to derive the spot from the forward.
    static constexpr double kSpotFromForward = -1.0;
    // What DeltaImpliedFromStrike returns instead of raising.
    static constexpr double kDeltaUnavailable = -987654321.0;

    // Times are year fractions: T to expiry drives the volatility, Td to delivery the discounting.
    BSVanilla(int optionType, double strike, double volatility, double timeToExpiry,
              double timeToDelivery, double domesticRate, double foreignRate, double spot);
    // The same option quoted on the forward to delivery. With spot = kSpotFromForward the spot is
    // F / ((1 + rd) / (1 + rf))^T: an annually compounded carry inside an otherwise continuous
    // model, kept as desks have always read it.
    static BSVanilla FromForward(int optionType, double strike, double volatility,
                                 double timeToExpiry, double timeToDelivery, double domesticRate,
                                 double foreignRate, double forward, double spot = kSpotFromForward);

    // New contract terms and rates with both discount factors; the set-up completes with the
    // next SetSpot or SetForward, which every caller gives right after.
    void SetBasicParameters(int optionType, double strike, double volatility, double timeToExpiry,
                            double timeToDelivery, double domesticRate, double foreignRate);
    // Forward from the spot and the carry, then the set-up of d1, d2 and the normal terms.
    void SetSpot(double spot);
    void SetForward(double forward, double spot = kSpotFromForward);

    bool IsExpired() const { return m_timeToExpiry < kExpiryThreshold; }
    int GetOptionType() const { return m_optionType; }
    double GetSpot() const { return m_spot; }
    double GetForward() const { return m_forward; }
    double GetD1() const { return m_d1; }
    double GetD2() const { return m_d2; }
    bool IsPriceValid() const { return m_priceValid; }

    // Premium in domestic currency per unit of the underlying, paid at delivery. An expired
    // option is worth its undiscounted intrinsic value on spot.
    double Price();
    // Spot delta when spotDelta is true, else premium-adjusted (spot delta minus Price / S).
    double Delta(bool spotDelta = true);
    // Forward delta phi N(phi d1); premium-adjusted: (K / F) phi N(phi d2).
    double ForwardDelta(bool spotDelta = true);
    double Gamma();
    // Per unit of volatility (a move from 0.10 to 1.10).
    double Vega();
    // Per calendar day: the per-year figure kept in the cache divided by 365.
    double Theta();
    double ThetaPerYear();
    // Domestic-rate sensitivity: T phi K DFd N(phi d2), with T to expiry and DFd to delivery.
    double Rho();
    // Foreign-rate sensitivity Td phi S DFf N(phi d1), with this positive sign, the mirror of the
    // textbook one: books that consume it add it rather than subtract it.
    double Phi();
    double Vanna();
    // dd1/dsigma in closed form, (sigma^2 T / 2 - ln(F/K)) / (sigma^2 sqrt T).
    double Dd1Dvol();
    // Volga through Dd1Dvol: -DFd F d1 n(d1) Dd1Dvol sqrt T. DvegaDvol is the same figure.
    double Volga();
    double DvegaDvol();
    // Volga computed directly: DFd F sqrt T n(d1) d1 d2 / sigma; agrees with Volga.
    double DvegaDvol2();
    double DvegaDspot();
    // Volatility sensitivity of the cash digital's probability, dN(d2)/dsigma.
    double VegaDigital();
    // Volatility sensitivity of the asset digital's probability, taken with the opposite sign:
    // -dN(d1)/dsigma.
    double VegaIDDigital();

    // Spot (or premium-adjusted) delta of the option struck at `strike`; never raises, any failure
    // gives kDeltaUnavailable.
    static double DeltaImpliedFromStrike(int optionType, double strike, double volatility,
                                         double timeToExpiry, double timeToDelivery,
                                         double domesticRate, double foreignRate, double spot,
                                         bool spotDelta = true) noexcept;
    // The strike whose delta of the given kind equals targetDelta (Newton, numerical derivative).
    // With noThrow a failure returns -1.0 instead of raising.
    static double StrikeImpliedFromDelta(int optionType, double targetDelta, double volatility,
                                         double timeToExpiry, double timeToDelivery,
                                         double domesticRate, double foreignRate, double spot,
                                         double initialStrike, DeltaKind kind = DeltaKind::Spot,
                                         bool noThrow = false);
    // The strike whose price equals targetPrice; an initial strike of 0 starts at the forward
    // S exp((rd - rf) T). Tolerance is relative to the target price.
    static double StrikeImpliedFromPrice(int optionType, double targetPrice, double volatility,
                                         double timeToExpiry, double timeToDelivery,
                                         double domesticRate, double foreignRate, double spot,
                                         double initialStrike = 0.0, double tolerance = 1e-10,
                                         int maxIterations = 100);
    // Implied volatility by bisection of the undiscounted forward premium, searched above
    // 1.1 * volatilityLimit.
    static double VolImpliedFromForwardPrice(int optionType, double strike, double forward,
                                             double time, double targetPrice,
                                             double volatilityLimit = 1e-4);
    // A spot premium paid at delivery: its forward value against the forward, same bisection.
    static double VolImpliedFromPrice(int optionType, double strike, double timeToExpiry,
                                      double timeToDelivery, double domesticRate,
                                      double foreignRate, double spot, double targetPrice,
                                      double volatilityLimit = 1e-4);
    // An option on a future whose premium is discounted at one rate over the option's life.
    static double VolImpliedFromFutureOptPrice(int optionType, double strike, double forward,
                                               double time, double rate, double targetPrice,
                                               double volatilityLimit = 1e-4);

private:
    BSVanilla() = default;
    void Setup();
    // The figure, or a zep::Error naming it and the market when it is not a finite number.
    double Finite(double value, const char* figure,
                  const SourceLine& where = SourceLine::Current()) const;
    std::string DescribeMarket() const;
    double ExpiredDelta() const;
    double Intrinsic() const;

    int m_optionType = Call;
    double m_phi = 1.0;
    double m_sigma = 0.0;
    double m_sigmaSquared = 0.0;
    double m_timeToDelivery = 0.0;
    double m_timeToExpiry = 0.0;
    double m_d1 = 0.0;
    double m_d2 = 0.0;
    double m_logMoneyness = 0.0;  // ln(F / K)
    double m_dd1Dsigma = 0.0;
    double m_inverseSigmaRootT = 0.0;
    double m_domesticRate = 0.0;
    double m_foreignRate = 0.0;
    double m_forward = 0.0;
    double m_spot = 0.0;
    double m_domesticDiscount = 1.0;
    double m_foreignDiscount = 1.0;
    double m_sqrtT = 0.0;
    double m_cdfPhiD1 = 0.0;
    double m_cdfPhiD2 = 0.0;
    double m_pdfD1 = 0.0;
    double m_pdfD2 = 0.0;
    double m_sigmaRootT = 0.0;
    double m_strike = 0.0;

    double m_price = 0.0;
    double m_delta = 0.0;
    double m_gamma = 0.0;
    double m_vega = 0.0;
    double m_thetaPerYear = 0.0;
    double m_rho = 0.0;
    double m_dN2Dsigma = 0.0;
    double m_minusDN1Dsigma = 0.0;
    double m_volga = 0.0;
    double m_dvegaDspot = 0.0;
    bool m_priceValid = false;
};

}  // namespace zep
