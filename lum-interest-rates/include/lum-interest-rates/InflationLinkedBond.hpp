// An inflation-linked bond: a fixed-rate bond in real terms whose every payment is scaled by the
// index ratio I(d) / I(base), d the payment's unadjusted accrual end (the maturity for the
// principal) and base the issue date, I the reference index of the inflation curve. The coupon
// paid is the real coupon times the ratio and the principal repaid the real notional times it.
#pragma once

#include <string>
#include <vector>

#include "lum-interest-rates/Bond.hpp"
#include "lum-interest-rates/ZeroInflationCurve.hpp"

namespace zep {

class InflationLinkedBond {
public:
    InflationLinkedBond(Bond realBond, const Date& baseDate);

    // I(date) / I(base).
    double IndexRatio(const ZeroInflationCurve& inflation, const Date& date) const;
    // The real bond's rows after the discount curve's reference date, amounts and rates indexed.
    std::vector<CashFlow> CashFlows(const ZeroInflationCurve& inflation, const YieldCurve& discount) const;
    // The indexed flows discounted, in the units of the bond's notionals.
    double PV(const ZeroInflationCurve& inflation, const YieldCurve& discount) const;
    const Bond& RealBond() const { return m_realBond; }
    std::string Describe() const;

private:
    Bond m_realBond;
    Date m_baseDate;
};

}  // namespace zep
