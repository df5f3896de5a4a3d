// The Hull-White one-factor short rate, dr = (theta(t) - a r) dt + sigma dW, with theta(t) chosen
// so that the model reprices today's discount curve. Written through the factor x = r - alpha(t),
// an Ornstein-Uhlenbeck process started at zero, every bond price at a future time t is today's
// forward discount factor times a lognormal function of x(t): that is what makes bond options,
// Jamshidian's swaption formula and a trinomial tree in x all consistent with one another.
#pragma once

#include <boost/shared_ptr.hpp>

#include "lum-interest-rates/YieldCurve.hpp"

namespace zep {

// Years from the curve's reference date to `date` under the curve's day counter: the model's clock.
double CurveTime(const YieldCurve& curve, const Date& date);

class HullWhite {
public:
    // a >= 0 (zero is the Ho-Lee limit) and sigma > 0, in the curve's own year fractions.
    HullWhite(boost::shared_ptr<const YieldCurve> curve, double meanReversion, double sigma);

    double MeanReversion() const { return m_a; }
    double Sigma() const { return m_sigma; }
    const YieldCurve& Curve() const { return *m_curve; }
    const boost::shared_ptr<const YieldCurve>& SharedCurve() const { return m_curve; }
    // Years from the curve's reference date under the curve's day counter.
    double Time(const Date& date) const;

    // B(t, T) = (1 - exp(-a (T - t))) / a: how much a move of the short rate at t moves the yield to T.
    double B(double t, double T) const;
    // The variance of x(t) seen from today.
    double FactorVariance(double t) const;
    // P(t, T) in the state x(t) = x.
    double DiscountBond(double t, double T, double x) const;
    // P(t, T) = exp(logWeight - slope x): the two numbers DiscountBond combines, for loops over x.
    void DiscountBondTerms(double t, double T, double& logWeight, double& slope) const;

    // Today's value of the right, at `expiry`, to buy (call) or sell (put) the zero-coupon bond
    // maturing at `bondMaturity` for `strike` per unit face.
    double DiscountBondOption(bool isCall, double strike, double expiry, double bondMaturity) const;
    // As above with the strike paid in `strike` units of the bond maturing at `strikeBond` rather
    // than in cash at expiry; strikeBond = expiry is the plain bond option.
    double BondExchangeOption(bool isCall, double strike, double expiry, double strikeBond, double bondMaturity) const;

private:
    boost::shared_ptr<const YieldCurve> m_curve;
    double m_a;
    double m_sigma;
};

}  // namespace zep
