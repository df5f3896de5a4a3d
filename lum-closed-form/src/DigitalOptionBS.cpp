#include "lum-closed-form/DigitalOptionBS.hpp"

#include <algorithm>
#include <cmath>

#include "lum-auxiliary/Error.hpp"
#include "lum-closed-form/BSVanilla.hpp"
#include "lum-closed-form/NormalDistribution.hpp"

namespace zep {

namespace {

constexpr double kOneDay = 1.0 / 365.0;
constexpr double kBasisPoint = 1e-4;

bool IsKnownType(int type) { return type >= 0 && type <= 3; }
bool IsCall(int type) { return type == 0 || type == 2; }
bool IsCash(int type) { return type == 0 || type == 1; }

// The Black-Scholes quantities of one valuation.
struct Terms {
    double d1, d2, sigmaRootT, domesticDiscount, foreignDiscount;
};

Terms TermsOf(double spot, double strike, double volatility, double timeToExpiry, double timeToDelivery,
              double domesticRate, double foreignRate) {
    const double domesticDiscount = std::exp(-domesticRate * timeToDelivery);
    const double foreignDiscount = std::exp(-foreignRate * timeToDelivery);
    const double sigmaRootT = volatility * std::sqrt(timeToExpiry);
    const double forward = spot * foreignDiscount / domesticDiscount;
    const double d1 = std::log(forward / strike) / sigmaRootT + sigmaRootT / 2.0;
    return {d1, d1 - sigmaRootT, sigmaRootT, domesticDiscount, foreignDiscount};
}

}  // namespace

DigitalOptionBS::DigitalOptionBS(int digitalType, double strike, double volatility, double timeToExpiry,
                                 double timeToDelivery, double domesticRate, double foreignRate, double spot,
                                 double payout, int pricingMethod)
    : m_digitalType(digitalType), m_strike(strike), m_volatility(volatility), m_timeToExpiry(timeToExpiry),
      m_timeToDelivery(timeToDelivery), m_domesticRate(domesticRate), m_foreignRate(foreignRate), m_spot(spot),
      m_payout(payout), m_pricingMethod(pricingMethod) {
    ZEP_REQUIRE(spot > 0.0 && std::isfinite(spot) && timeToExpiry >= 0.0 && std::isfinite(timeToExpiry) &&
                    volatility > 0.0 && std::isfinite(volatility),
                "Invalid spot price, time or volatility");
    ZEP_REQUIRE(strike > 0.0 && std::isfinite(strike), "DigitalOptionBS: strike must be positive");
    ZEP_REQUIRE(timeToDelivery >= timeToExpiry && std::isfinite(timeToDelivery),
                "DigitalOptionBS: time to delivery must not be before time to expiry");
    ZEP_REQUIRE(std::isfinite(domesticRate) && std::isfinite(foreignRate) && std::isfinite(payout),
                "DigitalOptionBS: rates and payout must be finite");
}

double DigitalOptionBS::AnalyticPrice(double spot, double volatility, double timeToExpiry, double timeToDelivery,
                                      double domesticRate) const {
    const double phi = IsCall(m_digitalType) ? 1.0 : -1.0;
    if (timeToExpiry < BSVanilla::kExpiryThreshold) {
        const bool inTheMoney = phi * (spot - m_strike) > 0.0;
        return inTheMoney ? m_payout * (IsCash(m_digitalType) ? 1.0 : spot) : 0.0;
    }
    const Terms t = TermsOf(spot, m_strike, volatility, timeToExpiry, timeToDelivery, domesticRate, m_foreignRate);
    return IsCash(m_digitalType) ? m_payout * t.domesticDiscount * NormalCdf(phi * t.d2)
                                 : m_payout * spot * t.foreignDiscount * NormalCdf(phi * t.d1);
}

double DigitalOptionBS::CallSpreadPrice(double spot, double volatility, double timeToExpiry, double timeToDelivery,
                                        double domesticRate) const {
    // The cash digital as a tight vanilla spread, the asset digital as the vanilla plus K cash
    // digitals (S 1{S > K} = (S - K)+ + K 1{S > K}; S 1{S < K} = K 1{S < K} - (K - S)+).
    const int vanillaType = IsCall(m_digitalType) ? BSVanilla::Call : BSVanilla::Put;
    const auto vanilla = [&](double strike) {
        return BSVanilla(vanillaType, strike, volatility, timeToExpiry, timeToDelivery, domesticRate, m_foreignRate,
                         spot)
            .Price();
    };
    const double width = m_strike * kCallSpreadWidth;
    const double phi = IsCall(m_digitalType) ? 1.0 : -1.0;
    const double cash = phi * (vanilla(m_strike - width) - vanilla(m_strike + width)) / (2.0 * width);
    if (IsCash(m_digitalType)) return m_payout * cash;
    return m_payout * (phi * vanilla(m_strike) + m_strike * cash);
}

double DigitalOptionBS::PriceWith(double spot, double volatility, double timeToExpiry, double timeToDelivery,
                                  double domesticRate) const {
    if (!IsKnownType(m_digitalType)) ZEP_FAIL("Unsupported digital option type");
    if (m_pricingMethod == static_cast<int>(DigitalPricingMethod::CallSpread))
        return CallSpreadPrice(spot, volatility, timeToExpiry, timeToDelivery, domesticRate);
    return AnalyticPrice(spot, volatility, timeToExpiry, timeToDelivery, domesticRate);
}

double DigitalOptionBS::Price() const {
    // Each function names the unknown method in its own words: callers match on them.
    if (m_pricingMethod != 0 && m_pricingMethod != 1) ZEP_FAIL("Unknown pricing method for DigitalOptionBS!");
    return PriceWith(m_spot, m_volatility, m_timeToExpiry, m_timeToDelivery, m_domesticRate);
}

double DigitalOptionBS::Delta() const {
    if (m_pricingMethod != 0 && m_pricingMethod != 1) ZEP_FAIL("unknow pricing method for DigitalOptinBS!");
    if (!IsKnownType(m_digitalType)) ZEP_FAIL("Unsupported digital option type");
    if (m_pricingMethod == 0 && m_timeToExpiry >= BSVanilla::kExpiryThreshold) {
        const Terms t = TermsOf(m_spot, m_strike, m_volatility, m_timeToExpiry, m_timeToDelivery, m_domesticRate,
                                m_foreignRate);
        const double phi = IsCall(m_digitalType) ? 1.0 : -1.0;
        return IsCash(m_digitalType)
                   ? phi * m_payout * t.domesticDiscount * NormalPdf(t.d2) / (m_spot * t.sigmaRootT)
                   : m_payout * t.foreignDiscount * (NormalCdf(phi * t.d1) + phi * NormalPdf(t.d1) / t.sigmaRootT);
    }
    const double h = m_spot * 1e-4;
    return (PriceWith(m_spot + h, m_volatility, m_timeToExpiry, m_timeToDelivery, m_domesticRate) -
            PriceWith(m_spot - h, m_volatility, m_timeToExpiry, m_timeToDelivery, m_domesticRate)) /
           (2.0 * h);
}

double DigitalOptionBS::Gamma() const {
    if (m_pricingMethod != 0 && m_pricingMethod != 1) ZEP_FAIL("unknow pricing method for DigitalOptinBS!");
    if (!IsKnownType(m_digitalType)) ZEP_FAIL("Unsupported digital option type");
    if (m_pricingMethod == 0 && m_timeToExpiry >= BSVanilla::kExpiryThreshold) {
        const Terms t = TermsOf(m_spot, m_strike, m_volatility, m_timeToExpiry, m_timeToDelivery, m_domesticRate,
                                m_foreignRate);
        const double phi = IsCall(m_digitalType) ? 1.0 : -1.0;
        const double variance = t.sigmaRootT * t.sigmaRootT;
        return IsCash(m_digitalType)
                   ? -phi * m_payout * t.domesticDiscount * NormalPdf(t.d2) * t.d1 / (m_spot * m_spot * variance)
                   : -phi * m_payout * t.foreignDiscount * NormalPdf(t.d1) * t.d2 / (m_spot * variance);
    }
    const double h = m_spot * 1e-3;
    return (PriceWith(m_spot + h, m_volatility, m_timeToExpiry, m_timeToDelivery, m_domesticRate) -
            2.0 * PriceWith(m_spot, m_volatility, m_timeToExpiry, m_timeToDelivery, m_domesticRate) +
            PriceWith(m_spot - h, m_volatility, m_timeToExpiry, m_timeToDelivery, m_domesticRate)) /
           (h * h);
}

double DigitalOptionBS::Vega() const {
    if (m_pricingMethod != 0 && m_pricingMethod != 1) ZEP_FAIL("unknown pricing method for DigitalOptionBS!");
    if (!IsKnownType(m_digitalType)) ZEP_FAIL("Unsupported digital option type");
    if (m_timeToExpiry < BSVanilla::kExpiryThreshold) return 0.0;
    if (m_pricingMethod == 0) {
        const Terms t = TermsOf(m_spot, m_strike, m_volatility, m_timeToExpiry, m_timeToDelivery, m_domesticRate,
                                m_foreignRate);
        const double phi = IsCall(m_digitalType) ? 1.0 : -1.0;
        // d2 moves by -d1 / sigma per unit of volatility, d1 by -d2 / sigma.
        return IsCash(m_digitalType)
                   ? -phi * m_payout * t.domesticDiscount * NormalPdf(t.d2) * t.d1 / m_volatility
                   : -phi * m_payout * m_spot * t.foreignDiscount * NormalPdf(t.d1) * t.d2 / m_volatility;
    }
    const double h = 1e-4;
    return (PriceWith(m_spot, m_volatility + h, m_timeToExpiry, m_timeToDelivery, m_domesticRate) -
            PriceWith(m_spot, m_volatility - h, m_timeToExpiry, m_timeToDelivery, m_domesticRate)) /
           (2.0 * h);
}

double DigitalOptionBS::Theta() const {
    if (m_pricingMethod != 0 && m_pricingMethod != 1) ZEP_FAIL("unknown pricing method for DigitalOptionBS!");
    const double step = std::min(kOneDay, m_timeToExpiry);
    return PriceWith(m_spot, m_volatility, m_timeToExpiry - step, m_timeToDelivery - step, m_domesticRate) -
           PriceWith(m_spot, m_volatility, m_timeToExpiry, m_timeToDelivery, m_domesticRate);
}

double DigitalOptionBS::Rho() const {
    if (m_pricingMethod != 0 && m_pricingMethod != 1) ZEP_FAIL("unknown pricing method for DigitalOptionBS!");
    if (!IsKnownType(m_digitalType)) ZEP_FAIL("Unsupported digital option type");
    if (m_timeToExpiry < BSVanilla::kExpiryThreshold) return 0.0;
    const Terms t = TermsOf(m_spot, m_strike, m_volatility, m_timeToExpiry, m_timeToDelivery, m_domesticRate,
                            m_foreignRate);
    const double phi = IsCall(m_digitalType) ? 1.0 : -1.0;
    // The domestic rate discounts the cash leg and lifts the forward to delivery: d1 and d2 move
    // by Td / (sigma sqrt T) per unit of rate.
    const double dD = m_timeToDelivery / t.sigmaRootT;
    if (IsCash(m_digitalType))
        return m_payout * t.domesticDiscount *
               (-m_timeToDelivery * NormalCdf(phi * t.d2) + phi * NormalPdf(t.d2) * dD);
    return phi * m_payout * m_spot * t.foreignDiscount * NormalPdf(t.d1) * dD;
}

double DigitalOptionBS::ComputeRhoSym() const {
    if (!IsKnownType(m_digitalType)) ZEP_FAIL("Unknown DigitalType in ComputeRhoSym.");
    if (m_pricingMethod != 0 && m_pricingMethod != 1) ZEP_FAIL("unknown pricing method for DigitalOptionBS!");
    return (PriceWith(m_spot, m_volatility, m_timeToExpiry, m_timeToDelivery, m_domesticRate + kBasisPoint) -
            PriceWith(m_spot, m_volatility, m_timeToExpiry, m_timeToDelivery, m_domesticRate - kBasisPoint)) /
           (2.0 * kBasisPoint);
}

}  // namespace zep
