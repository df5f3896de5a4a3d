// A year-on-year inflation swap: each period (s, e] one side pays notional * tau * (I(e) / I(s) - 1),
// the inflation of the period, the other notional * tau * K, on the period's payment date; I the
// reference index of the inflation curve on the unadjusted period dates. The forward inflation of
// a period is read off the zero-coupon curve without a convexity adjustment (the index ratio's
// volatility is taken as zero); periods paid by the discount curve's reference date are gone.
#pragma once

#include <string>
#include <vector>

#include "lum-interest-rates/CashFlow.hpp"
#include "lum-interest-rates/Swap.hpp"
#include "lum-interest-rates/YieldCurve.hpp"
#include "lum-interest-rates/ZeroInflationCurve.hpp"
#include "lum-time/Schedule.hpp"

namespace zep {

class YearOnYearInflationSwap {
public:
    // fixedSide Pay: the holder pays the fixed leg and receives inflation. Both legs accrue on
    // the schedule's fractions.
    YearOnYearInflationSwap(SwapSide fixedSide, double notional, double fixedRate, const Schedule& schedule);

    double PV(const ZeroInflationCurve& inflation, const YieldCurve& discount) const;
    double InflationLegPV(const ZeroInflationCurve& inflation, const YieldCurve& discount) const;
    double FixedLegPV(const YieldCurve& discount) const;
    // The fixed rate at which the swap is worth nothing.
    double FairRate(const ZeroInflationCurve& inflation, const YieldCurve& discount) const;
    // Each period's inflation of the curve: I(e) / I(s) - 1.
    std::vector<double> PeriodInflation(const ZeroInflationCurve& inflation) const;
    // The payments still to come, inflation rows then fixed rows, the paid ones negative.
    std::vector<CashFlow> CashFlows(const ZeroInflationCurve& inflation, const YieldCurve& discount) const;
    std::string Describe() const;

private:
    double ReceivedSign() const { return m_fixedSide == SwapSide::Pay ? 1.0 : -1.0; }
    static double PeriodRate(const ZeroInflationCurve& inflation, const SchedulePeriod& period);
    // sum of tau * D(payment) over the periods still to pay.
    double Annuity(const YieldCurve& discount) const;

    SwapSide m_fixedSide;
    double m_notional;
    double m_fixedRate;
    std::vector<SchedulePeriod> m_periods;
};

}  // namespace zep
