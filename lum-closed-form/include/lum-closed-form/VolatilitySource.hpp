// Where an option reads its volatility: one figure per strike and time to expiry, from a flat
// number or from a smile surface.
#pragma once

#include <boost/shared_ptr.hpp>

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

// Another source moved by the same number of volatility points at every strike and expiry: the
// smile keeps its shape, the market moves its level (a scenario's ATM shock, a vega bump).
class ShiftedVolatility : public VolatilitySource {
public:
    ShiftedVolatility(boost::shared_ptr<const VolatilitySource> base, double shift)
        : m_base(std::move(base)), m_shift(shift) {}
    double Volatility(double strike, double timeToExpiry) const override {
        return m_base->Volatility(strike, timeToExpiry) + m_shift;
    }
    bool IsFXVolSurface() const override { return m_base->IsFXVolSurface(); }

private:
    boost::shared_ptr<const VolatilitySource> m_base;
    double m_shift;
};

}  // namespace zep
