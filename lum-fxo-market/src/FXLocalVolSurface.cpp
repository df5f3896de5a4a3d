#include "lum-fxo-market/FXLocalVolSurface.hpp"

#include <algorithm>
#include <cmath>

#include "lum-auxiliary/Error.hpp"

namespace zep {

namespace {

// Central differences: the time step is small against the shortest FX expiry (a week), the
// moneyness step small against the pillars' spacing (a few hundredths).
constexpr double kTimeStep = 1e-5;
constexpr double kMoneynessStep = 1e-4;

}  // namespace

FXLocalVolSurface::FXLocalVolSurface(boost::shared_ptr<const FXVolSurface> surface)
    : m_surface(std::move(surface)) {
    ZEP_REQUIRE(m_surface, "FXVolSurface is Null!");
}

double FXLocalVolSurface::TotalVariance(double time, double logMoneyness) const {
    const double vol = m_surface->GetVolatility(time, m_surface->Forward(time) * std::exp(logMoneyness));
    return vol * vol * time;
}

double FXLocalVolSurface::Volatility(double time, double spot) const {
    ZEP_REQUIRE(spot > 0.0 && std::isfinite(spot), "Spot must be positive, got " + std::to_string(spot) + ".");
    // At time zero the local volatility is the short end's implied one.
    const double t = std::max(time, 2.0 * kTimeStep);
    const double y = std::log(spot / m_surface->Forward(t));
    const double w = TotalVariance(t, y);
    const double dwdt = (TotalVariance(t + kTimeStep, y) - TotalVariance(t - kTimeStep, y)) / (2.0 * kTimeStep);
    const double up = TotalVariance(t, y + kMoneynessStep), down = TotalVariance(t, y - kMoneynessStep);
    const double dwdy = (up - down) / (2.0 * kMoneynessStep);
    const double d2wdy2 = (up - 2.0 * w + down) / (kMoneynessStep * kMoneynessStep);
    const double denominator = 1.0 - y / w * dwdy + 0.25 * (-0.25 - 1.0 / w + y * y / (w * w)) * dwdy * dwdy +
                               0.5 * d2wdy2;
    const double localVariance = dwdt / denominator;
    ZEP_REQUIRE(localVariance > 0.0 && denominator > 0.0,
                "Local variance is negative at time " + std::to_string(time) + ", spot " +
                    std::to_string(spot) + ": the surface has arbitrage there.");
    return std::sqrt(localVariance);
}

DupireMarket FXLocalVolSurface::ForwardEquationMarket() const {
    const FXLocalVolSurface local(m_surface);
    const boost::shared_ptr<const FXVolSurface> surface = m_surface;
    return {[local](double time, double strike) { return local.Volatility(time, strike); },
            [surface](double time) { return surface->Forward(time); },
            [surface](double time) { return surface->DomesticCurve()->DiscountFactor(time); }};
}

}  // namespace zep
