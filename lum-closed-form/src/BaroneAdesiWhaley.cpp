#include "lum-closed-form/BaroneAdesiWhaley.hpp"

#include <cmath>

#include "lum-auxiliary/Error.hpp"
#include "lum-closed-form/BSVanilla.hpp"
#include "lum-closed-form/NormalDistribution.hpp"

namespace zep {
namespace {

constexpr int kMaxNewtonSteps = 100;
constexpr double kCriticalSpotTolerance = 1e-10;

struct Quadratic {
    double q;               // the power of the spot in the premium: q2 > 1 (call), q1 < 0 (put)
    double carryDiscount;   // e^((b - r) T) = e^(-rf T)
    double sigmaRootT;
};

void CheckInputs(int optionType, double strike, double volatility, double timeToExpiry, double domesticRate,
                 double foreignRate) {
    ZEP_REQUIRE(optionType == BSVanilla::Call || optionType == BSVanilla::Put, "option type must be 0 (call) or 1 (put)");
    ZEP_REQUIRE(strike > 0.0 && std::isfinite(strike), "strike must be a finite number > 0");
    ZEP_REQUIRE(volatility >= BSVanilla::kMinimumVolatility && std::isfinite(volatility),
                "volatility must be a finite number >= 1e-10");
    ZEP_REQUIRE(timeToExpiry >= 0.0 && std::isfinite(timeToExpiry), "time to expiry must be a finite number >= 0");
    ZEP_REQUIRE(std::isfinite(domesticRate) && std::isfinite(foreignRate), "rates must be finite numbers");
}

bool ExercisedEarly(int optionType, double domesticRate, double foreignRate) {
    return optionType == BSVanilla::Call ? foreignRate > 0.0 : domesticRate > 0.0;
}

Quadratic QuadraticOf(int optionType, double volatility, double t, double rd, double rf) {
    const double variance = volatility * volatility;
    const double m = 2.0 * rd / variance;
    const double nMinusOne = 2.0 * (rd - rf) / variance - 1.0;
    const double k = -std::expm1(-rd * t);
    const double root = std::sqrt(nMinusOne * nMinusOne + 4.0 * m / k);
    const double phi = optionType == BSVanilla::Call ? 1.0 : -1.0;
    return {0.5 * (-nMinusOne + phi * root), std::exp(-rf * t), volatility * std::sqrt(t)};
}

// Newton's iteration: for a call, S* - K = c(S*) + (1 - e^(-rf T) N(d1)) S* / q2; for a put,
// K - S** = p(S**) - (1 - e^(-rf T) N(-d1)) S** / q1. Started from Haug's seed.
double CriticalSpot(int optionType, double strike, double volatility, double t, double rd, double rf) {
    const Quadratic quad = QuadraticOf(optionType, volatility, t, rd, rf);
    const double phi = optionType == BSVanilla::Call ? 1.0 : -1.0;
    const double variance = volatility * volatility;
    const double nMinusOne = 2.0 * (rd - rf) / variance - 1.0;
    const double qInfinity = 0.5 * (-nMinusOne + phi * std::sqrt(nMinusOne * nMinusOne + 8.0 * rd / variance));
    const double spotInfinity = strike / (1.0 - 1.0 / qInfinity);
    const double h = -(phi * (rd - rf) * t + 2.0 * quad.sigmaRootT) * strike / (phi * (spotInfinity - strike));
    double s = optionType == BSVanilla::Call ? strike + (spotInfinity - strike) * (1.0 - std::exp(h))
                                             : spotInfinity + (strike - spotInfinity) * std::exp(h);
    BSVanilla european(optionType, strike, volatility, t, t, rd, rf, s);
    for (int step = 0; step < kMaxNewtonSteps; ++step) {
        european.SetSpot(s);
        const double d1 = european.GetD1();
        const double cdf = NormalCdf(phi * d1);
        const double lhs = phi * (s - strike);
        const double rhs = european.Price() + phi * (1.0 - quad.carryDiscount * cdf) * s / quad.q;
        if (std::abs(lhs - rhs) <= kCriticalSpotTolerance * strike) return s;
        // d(rhs)/dS, the signs of call and put folded into phi.
        const double slope = phi * (quad.carryDiscount * cdf * (1.0 - 1.0 / quad.q) +
                                    (1.0 - phi * quad.carryDiscount * NormalPdf(d1) / quad.sigmaRootT) / quad.q);
        s = optionType == BSVanilla::Call ? (strike + rhs - slope * s) / (1.0 - slope)
                                          : (strike - rhs + slope * s) / (1.0 + slope);
        ZEP_REQUIRE(s > 0.0 && std::isfinite(s), "Barone-Adesi-Whaley: the critical spot search left the positive numbers");
    }
    ZEP_FAIL("Barone-Adesi-Whaley: the critical spot did not converge in 100 Newton steps");
}

}  // namespace

double BaroneAdesiWhaleyCriticalSpot(int optionType, double strike, double volatility, double timeToExpiry,
                                     double domesticRate, double foreignRate) {
    CheckInputs(optionType, strike, volatility, timeToExpiry, domesticRate, foreignRate);
    ZEP_REQUIRE(ExercisedEarly(optionType, domesticRate, foreignRate) && timeToExpiry >= BSVanilla::kExpiryThreshold,
                "never exercised early: a call needs a foreign rate > 0, a put a domestic rate > 0");
    return CriticalSpot(optionType, strike, volatility, timeToExpiry, domesticRate, foreignRate);
}

double BaroneAdesiWhaleyPrice(int optionType, double strike, double volatility, double timeToExpiry,
                              double domesticRate, double foreignRate, double spot) {
    CheckInputs(optionType, strike, volatility, timeToExpiry, domesticRate, foreignRate);
    ZEP_REQUIRE(spot > 0.0 && std::isfinite(spot), "spot must be a finite number > 0");
    BSVanilla european(optionType, strike, volatility, timeToExpiry, timeToExpiry, domesticRate, foreignRate, spot);
    if (!ExercisedEarly(optionType, domesticRate, foreignRate) || european.IsExpired()) return european.Price();
    const double phi = optionType == BSVanilla::Call ? 1.0 : -1.0;
    const double critical = CriticalSpot(optionType, strike, volatility, timeToExpiry, domesticRate, foreignRate);
    if (phi * (spot - critical) >= 0.0) return phi * (spot - strike);
    const Quadratic quad = QuadraticOf(optionType, volatility, timeToExpiry, domesticRate, foreignRate);
    BSVanilla atCritical(optionType, strike, volatility, timeToExpiry, timeToExpiry, domesticRate, foreignRate, critical);
    const double weight = phi * (critical / quad.q) * (1.0 - quad.carryDiscount * NormalCdf(phi * atCritical.GetD1()));
    return european.Price() + weight * std::pow(spot / critical, quad.q);
}

}  // namespace zep
