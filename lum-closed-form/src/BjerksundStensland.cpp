#include "lum-closed-form/BjerksundStensland.hpp"

#include <algorithm>
#include <cmath>

#include "lum-auxiliary/Error.hpp"
#include "lum-closed-form/BSVanilla.hpp"
#include "lum-closed-form/BivariateNormal.hpp"
#include "lum-closed-form/NormalDistribution.hpp"

namespace zep {
namespace {

// The market of the call formula: rate r, carry b, volatility v.
struct Market {
    double r, b, v;
    double Lambda(double gamma) const { return -r + gamma * b + 0.5 * gamma * (gamma - 1.0) * v * v; }
    double Kappa(double gamma) const { return 2.0 * b / (v * v) + 2.0 * gamma - 1.0; }
    double Drift(double gamma) const { return b + (gamma - 0.5) * v * v; }
};

// The value at 0 of S_t^gamma paid at t if S never reached the barrier I before t and S_t <= H.
double Phi(const Market& m, double s, double t, double gamma, double h, double barrier) {
    const double root = m.v * std::sqrt(t);
    const double d = -(std::log(s / h) + m.Drift(gamma) * t) / root;
    return std::exp(m.Lambda(gamma) * t) * std::pow(s, gamma) *
           (NormalCdf(d) - std::pow(barrier / s, m.Kappa(gamma)) * NormalCdf(d - 2.0 * std::log(barrier / s) / root));
}

// The same over the two periods: barrier I1 up to t1, I2 from t1 to T, payment at T.
double Psi(const Market& m, double s, double t, double gamma, double h, double i2, double i1, double t1) {
    const double drift = m.Drift(gamma);
    const double root1 = m.v * std::sqrt(t1), root = m.v * std::sqrt(t);
    const double e1 = (std::log(s / i1) + drift * t1) / root1;
    const double e2 = (std::log(i2 * i2 / (s * i1)) + drift * t1) / root1;
    const double e3 = (std::log(s / i1) - drift * t1) / root1;
    const double e4 = (std::log(i2 * i2 / (s * i1)) - drift * t1) / root1;
    const double f1 = (std::log(s / h) + drift * t) / root;
    const double f2 = (std::log(i2 * i2 / (s * h)) + drift * t) / root;
    const double f3 = (std::log(i1 * i1 / (s * h)) + drift * t) / root;
    const double f4 = (std::log(s * i1 * i1 / (h * i2 * i2)) + drift * t) / root;
    const double rho = std::sqrt(t1 / t);
    const double kappa = m.Kappa(gamma);
    return std::exp(m.Lambda(gamma) * t) * std::pow(s, gamma) *
           (BivariateNormalCdf(-e1, -f1, rho) - std::pow(i2 / s, kappa) * BivariateNormalCdf(-e2, -f2, rho) -
            std::pow(i1 / s, kappa) * BivariateNormalCdf(-e3, -f3, -rho) +
            std::pow(i1 / i2, kappa) * BivariateNormalCdf(-e4, -f4, -rho));
}

// The American call with early exercise worth something (b < r).
double Call(const Market& m, double s, double k, double t) {
    const double t1 = 0.5 * (std::sqrt(5.0) - 1.0) * t;
    const double v2 = m.v * m.v;
    const double beta = (0.5 - m.b / v2) + std::sqrt(std::pow(m.b / v2 - 0.5, 2) + 2.0 * m.r / v2);
    const double bInfinity = beta / (beta - 1.0) * k;
    const double b0 = std::max(k, m.r / (m.r - m.b) * k);
    const auto trigger = [&](double time) {
        const double h = -(m.b * time + 2.0 * m.v * std::sqrt(time)) * k * k / ((bInfinity - b0) * b0);
        return b0 + (bInfinity - b0) * -std::expm1(h);
    };
    const double i1 = trigger(t1), i2 = trigger(t);
    if (s >= i2) return s - k;
    const double alpha1 = (i1 - k) * std::pow(i1, -beta), alpha2 = (i2 - k) * std::pow(i2, -beta);
    return alpha2 * std::pow(s, beta) - alpha2 * Phi(m, s, t1, beta, i2, i2) + Phi(m, s, t1, 1.0, i2, i2) -
           Phi(m, s, t1, 1.0, i1, i2) - k * Phi(m, s, t1, 0.0, i2, i2) + k * Phi(m, s, t1, 0.0, i1, i2) +
           alpha1 * Phi(m, s, t1, beta, i1, i2) - alpha1 * Psi(m, s, t, beta, i1, i2, i1, t1) +
           Psi(m, s, t, 1.0, i1, i2, i1, t1) - Psi(m, s, t, 1.0, k, i2, i1, t1) -
           k * Psi(m, s, t, 0.0, i1, i2, i1, t1) + k * Psi(m, s, t, 0.0, k, i2, i1, t1);
}

}  // namespace

double BjerksundStenslandPrice(int optionType, double strike, double volatility, double timeToExpiry,
                               double domesticRate, double foreignRate, double spot) {
    // The Black-Scholes engine checks every term the two share.
    BSVanilla european(optionType, strike, volatility, timeToExpiry, timeToExpiry, domesticRate, foreignRate, spot);
    const double europeanPrice = european.Price();
    if (european.IsExpired()) return europeanPrice;
    const bool call = optionType == BSVanilla::Call;
    if (call ? foreignRate <= 0.0 : domesticRate <= 0.0) return europeanPrice;
    const double carry = domesticRate - foreignRate;
    const double american = call ? Call({domesticRate, carry, volatility}, spot, strike, timeToExpiry)
                                 : Call({foreignRate, -carry, volatility}, strike, spot, timeToExpiry);
    ZEP_REQUIRE(std::isfinite(american), "the Bjerksund-Stensland approximation gives no finite price for these terms");
    // A lower bound on the American price, which is worth at least the European.
    return std::max(american, europeanPrice);
}

}  // namespace zep
