// Where an option reads its volatility: one figure per strike and time to expiry, from a flat
// number or from a smile surface.
#pragma once

namespace zep {

class VolatilitySource {
public:
    virtual ~VolatilitySource() = default;
    // Black-Scholes volatility (0.1 = 10%) for the strike and the year fraction to expiry.
    virtual double Volatility(double strike, double timeToExpiry) const = 0;
    // A delta-quoted FX surface: its volatility moves with the strike, so solving a strike from
    // a premium must read the smile at every trial strike.
    virtual bool IsFXVolSurface() const { return false; }
};

// The same volatility at every strike and expiry.
class FlatVolatility : public VolatilitySource {
public:
    explicit FlatVolatility(double volatility) : m_volatility(volatility) {}
    double Volatility(double, double) const override { return m_volatility; }

private:
    double m_volatility;
};

}  // namespace zep
