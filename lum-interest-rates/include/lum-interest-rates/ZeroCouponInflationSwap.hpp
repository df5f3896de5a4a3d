// A zero-coupon inflation swap: at maturity one side pays notional * (I(T) / I(S) - 1), the index
// growth from start to maturity, the other notional * ((1 + K)^tau - 1), both netted on one
// payment date; I the reference index of the inflation curve (lagged and interpolated). Once
// paid (payment on or before the discount curve's reference date) it is worth nothing.
#pragma once

#include <string>
#include <vector>

#include "lum-interest-rates/CashFlow.hpp"
#include "lum-interest-rates/Swap.hpp"
#include "lum-interest-rates/YieldCurve.hpp"
#include "lum-interest-rates/ZeroInflationCurve.hpp"

namespace zep {

class ZeroCouponInflationSwap {
public:
    // fixedSide Pay: the holder pays the fixed leg and receives inflation.
    ZeroCouponInflationSwap(SwapSide fixedSide, double notional, double fixedRate, const Date& start,
                            const Date& maturity, const Date& payment);

    double PV(const ZeroInflationCurve& inflation, const YieldCurve& discount) const;
    double InflationLegPV(const ZeroInflationCurve& inflation, const YieldCurve& discount) const;
    double FixedLegPV(const ZeroInflationCurve& inflation, const YieldCurve& discount) const;
    double FairRate(const ZeroInflationCurve& inflation) const;
    // The two payments, the paid one negative, inflation first.
    std::vector<CashFlow> CashFlows(const ZeroInflationCurve& inflation, const YieldCurve& discount) const;
    std::string Describe() const;

private:
    double ReceivedSign() const { return m_fixedSide == SwapSide::Pay ? 1.0 : -1.0; }

    SwapSide m_fixedSide;
    double m_notional;
    double m_fixedRate;
    Date m_start, m_maturity, m_payment;
};

}  // namespace zep
