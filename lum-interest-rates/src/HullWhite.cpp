#include "lum-interest-rates/HullWhite.hpp"

#include <cmath>

#include "lum-auxiliary/Error.hpp"
#include "lum-closed-form/NormalDistribution.hpp"

namespace zep {

namespace {

// (1 - exp(-rate tau)) / rate, which tends to tau as the rate goes to zero.
double Decay(double rate, double tau) { return rate == 0.0 ? tau : -std::expm1(-rate * tau) / rate; }

}  // namespace

HullWhite::HullWhite(boost::shared_ptr<const YieldCurve> curve, double meanReversion, double sigma)
    : m_curve(std::move(curve)), m_a(meanReversion), m_sigma(sigma) {
    ZEP_REQUIRE(m_curve, "the Hull-White model needs a discount curve");
    ZEP_REQUIRE(std::isfinite(meanReversion) && meanReversion >= 0.0,
                "the mean reversion " + std::to_string(meanReversion) + " must be finite and >= 0");
    ZEP_REQUIRE(std::isfinite(sigma) && sigma > 0.0, "the volatility " + std::to_string(sigma) +
                                                         " must be finite and > 0");
}

double CurveTime(const YieldCurve& curve, const Date& date) {
    return curve.GetDayCounter().YearFraction(curve.ReferenceDate(), date);
}

double HullWhite::Time(const Date& date) const { return CurveTime(*m_curve, date); }

double HullWhite::B(double t, double T) const { return Decay(m_a, T - t); }

double HullWhite::FactorVariance(double t) const { return m_sigma * m_sigma * Decay(2.0 * m_a, t); }

void HullWhite::DiscountBondTerms(double t, double T, double& logWeight, double& slope) const {
    slope = B(t, T);
    // Under the measure of the bond maturing at t, x(t) has mean -sigma^2 B(0, t)^2 / 2 and the
    // variance above; the weight makes the forward bond price the mean of P(t, T).
    const double toT = B(0.0, t);
    logWeight = std::log(m_curve->DiscountFactor(T) / m_curve->DiscountFactor(t)) -
                0.5 * slope * slope * FactorVariance(t) - 0.5 * m_sigma * m_sigma * slope * toT * toT;
}

double HullWhite::DiscountBond(double t, double T, double x) const {
    double logWeight, slope;
    DiscountBondTerms(t, T, logWeight, slope);
    return std::exp(logWeight - slope * x);
}

double HullWhite::BondExchangeOption(bool isCall, double strike, double expiry, double strikeBond,
                                     double bondMaturity) const {
    ZEP_REQUIRE(std::isfinite(strike) && strike > 0.0, "the bond option strike " + std::to_string(strike) +
                                                           " must be positive");
    ZEP_REQUIRE(expiry >= 0.0 && strikeBond >= expiry && bondMaturity >= strikeBond,
                "the bond option needs expiry <= strike bond <= bond maturity");
    const double bond = m_curve->DiscountFactor(bondMaturity);
    const double paid = strike * m_curve->DiscountFactor(strikeBond);
    // The ratio of the two bonds is lognormal at expiry with this total volatility.
    const double volatility = std::sqrt(FactorVariance(expiry)) * (B(expiry, bondMaturity) - B(expiry, strikeBond));
    const double sign = isCall ? 1.0 : -1.0;
    if (volatility <= 0.0) return std::max(sign * (bond - paid), 0.0);
    const double d1 = std::log(bond / paid) / volatility + 0.5 * volatility;
    return sign * (bond * NormalCdf(sign * d1) - paid * NormalCdf(sign * (d1 - volatility)));
}

double HullWhite::DiscountBondOption(bool isCall, double strike, double expiry, double bondMaturity) const {
    return BondExchangeOption(isCall, strike, expiry, expiry, bondMaturity);
}

}  // namespace zep
