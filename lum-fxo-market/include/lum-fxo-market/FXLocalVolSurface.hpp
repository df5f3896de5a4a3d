// The Dupire local volatility of an FX volatility surface: the one diffusion sigma(t, S) that
// reprices every vanilla the surface prices, read off its total implied variance w(t, y) at
// log-forward-moneyness y = ln(K / F(t)) with Gatheral's form of Dupire's formula
//   sigma^2(t, K) = dw/dt / (1 - y/w dw/dy + 1/4 (-1/4 - 1/w + y^2/w^2) (dw/dy)^2 + 1/2 d2w/dy2).
#pragma once

#include <boost/shared_ptr.hpp>

#include "lum-fxo-market/FXVolSurface.hpp"

namespace zep {

class FXLocalVolSurface {
public:
    explicit FXLocalVolSurface(boost::shared_ptr<const FXVolSurface> surface);

    // The local volatility at a time (years from the reference date) and a spot level. Where the
    // surface has arbitrage the local variance turns negative and the call fails naming the
    // point.
    double Volatility(double time, double spot) const;

private:
    double TotalVariance(double time, double logMoneyness) const;

    boost::shared_ptr<const FXVolSurface> m_surface;
};

}  // namespace zep
