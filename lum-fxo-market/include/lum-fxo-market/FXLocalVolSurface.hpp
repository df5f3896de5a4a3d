// The Dupire local volatility of an FX volatility surface: the one diffusion sigma(t, S) that
// reprices every vanilla the surface prices, read off its total implied variance w(t, y) at
// log-forward-moneyness y = ln(K / F(t)) with Gatheral's form of Dupire's formula
//   sigma^2(t, K) = dw/dt / (1 - y/w dw/dy + 1/4 (-1/4 - 1/w + y^2/w^2) (dw/dy)^2 + 1/2 d2w/dy2).
#pragma once

#include <boost/shared_ptr.hpp>

#include "lum-fxo-market/FXVolSurface.hpp"
#include "zep-pde/DupireForwardPde.hpp"

namespace zep {

class FXLocalVolSurface {
public:
    explicit FXLocalVolSurface(boost::shared_ptr<const FXVolSurface> surface);

    // The local volatility at a time (years from the reference date) and a spot level. Where the
    // surface has arbitrage the local variance turns negative and the call fails naming the
    // point.
    double Volatility(double time, double spot) const;

    // What Dupire's forward equation reads to reprice the surface's vanillas: this local
    // volatility, the surface's forwards and its domestic discount factors (as its vanillas
    // discount). The functions hold this object's surface, not this object.
    DupireMarket ForwardEquationMarket() const;

private:
    double TotalVariance(double time, double logMoneyness) const;

    boost::shared_ptr<const FXVolSurface> m_surface;
};

}  // namespace zep
