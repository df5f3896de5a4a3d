#include "lum-fxo-market/FXDeltaConvention.hpp"

#include <cmath>

#include "lum-auxiliary/Error.hpp"
#include "lum-closed-form/NormalDistribution.hpp"
#include "lum-solvers/Bisection.hpp"
#include "lum-solvers/ModifiedSecant.hpp"

namespace zep {

namespace {

// ln N(d) keeping its precision where N underflows: beyond -30 the Mills-ratio series
// N(d) = n(d) / |d| (1 - 1/d^2 + 3/d^4 - 15/d^6) is exact to the last digits that matter here.
double LogNormalCdf(double d) {
    if (d > -30.0) return std::log(NormalCdf(d));
    const double inverseSquare = 1.0 / (d * d);
    return std::log(kInverseSqrtTwoPi) - 0.5 * d * d - std::log(-d) +
           std::log(1.0 + inverseSquare * (-1.0 + inverseSquare * (3.0 - 15.0 * inverseSquare)));
}

// The premium-adjusted forward call delta (K/F) N(d2) peaks where sigma sqrt(T) N(d2) = n(d2);
// strikes below that peak give the same delta twice, the market takes the strike above it.
double PeakOfAdjustedCallDelta(double sigmaRootT) {
    Bisection bisection(1e-12, 200);
    bisection.SetDomain(-1e6, 40.0);
    // Increasing in d2: the log of sigma sqrt(T) N(d2) / n(d2).
    const double d2 = bisection.Solve([&](double d) {
        return std::log(sigmaRootT) + LogNormalCdf(d) + 0.5 * d * d - std::log(kInverseSqrtTwoPi);
    });
    return -d2 * sigmaRootT - 0.5 * sigmaRootT * sigmaRootT;  // ln(K/F) at the peak
}

}  // namespace

void CheckFXConventions(int deltaType, int premiumAdjusted, int atmType) {
    const bool known = (deltaType == SpotDelta || deltaType == ForwardDelta) &&
                       (premiumAdjusted == PremiumExcluded || premiumAdjusted == PremiumIncluded) &&
                       (atmType == ATMForward || atmType == ATMDeltaNeutral || atmType == ATMSpot);
    ZEP_REQUIRE(known, "unknown pa/deltatype/atmtype!");
}

double FXDeltaOfStrike(double strike, double volatility, const FXDeltaMarket& market,
                       int deltaType, int premiumAdjusted, bool isCall) {
    CheckFXConventions(deltaType, premiumAdjusted, ATMForward);
    const double phi = isCall ? 1.0 : -1.0;
    const double sigmaRootT = volatility * std::sqrt(market.timeToExpiry);
    const double d1 = (std::log(market.forward / strike) + 0.5 * sigmaRootT * sigmaRootT) / sigmaRootT;
    const double forwardDelta = premiumAdjusted == PremiumIncluded
                                    ? phi * strike / market.forward * NormalCdf(phi * (d1 - sigmaRootT))
                                    : phi * NormalCdf(phi * d1);
    return deltaType == SpotDelta ? market.foreignDiscount * forwardDelta : forwardDelta;
}

double FXStrikeFromDelta(double delta, double volatility, const FXDeltaMarket& market,
                         int deltaType, int premiumAdjusted) {
    CheckFXConventions(deltaType, premiumAdjusted, ATMForward);
    ZEP_REQUIRE(delta != 0.0 && std::isfinite(delta), "Delta must be non-zero and finite.");
    ZEP_REQUIRE(volatility > 0.0 && market.timeToExpiry > 0.0,
                "Volatility and time to expiry must be positive.");
    const double phi = delta > 0.0 ? 1.0 : -1.0;
    const double forwardDelta = deltaType == SpotDelta ? delta / market.foreignDiscount : delta;
    ZEP_REQUIRE(phi * forwardDelta < 1.0, "Delta is beyond the reach of any strike.");
    const double sigmaRootT = volatility * std::sqrt(market.timeToExpiry);
    const double halfVariance = 0.5 * sigmaRootT * sigmaRootT;
    // Without the premium: phi N(phi d1) = delta inverts to d1 in closed form.
    const double d1 = phi * InverseNormalCdf(phi * forwardDelta);
    const double unadjustedLogMoneyness = halfVariance - d1 * sigmaRootT;
    if (premiumAdjusted == PremiumExcluded) return market.forward * std::exp(unadjustedLogMoneyness);

    // With the premium the delta is phi (K/F) N(phi d2): smaller than the plain delta at every
    // strike, so the root lies below the plain strike.
    const auto excess = [&](double logMoneyness) {
        const double d2 = (-logMoneyness - halfVariance) / sigmaRootT;
        return phi * std::exp(logMoneyness) * NormalCdf(phi * d2) - forwardDelta;
    };
    double low;
    if (phi > 0.0) {
        low = PeakOfAdjustedCallDelta(sigmaRootT);
    } else {
        // The put's adjusted delta falls monotonically from 0: step down until above the target.
        double width = sigmaRootT;
        low = unadjustedLogMoneyness - width;
        while (excess(low) < 0.0 && width < 1e3) {
            width *= 2.0;
            low = unadjustedLogMoneyness - width;
        }
    }
    ModifiedSecant secant(1e-15, 300);
    secant.SetDomain(low, unadjustedLogMoneyness);
    return market.forward * std::exp(secant.Solve(excess));
}

double FXAtmStrike(double volatility, const FXDeltaMarket& market, int premiumAdjusted, int atmType) {
    CheckFXConventions(SpotDelta, premiumAdjusted, atmType);
    switch (atmType) {
        case ATMForward: return market.forward;
        case ATMSpot: return market.spot;
        default: {
            // Call and put deltas cancel: d1 = 0 plain, d2 = 0 with the premium, for spot and
            // forward deltas alike (the foreign discount factor multiplies both).
            const double halfVariance = 0.5 * volatility * volatility * market.timeToExpiry;
            return market.forward * std::exp(premiumAdjusted == PremiumIncluded ? -halfVariance
                                                                                : halfVariance);
        }
    }
}

}  // namespace zep
