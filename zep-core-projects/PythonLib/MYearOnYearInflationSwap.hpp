// The Python face of a year-on-year inflation swap on an inflation curve and a discount curve:
// payFixed +1 pays tau * K and receives tau * (I(e) / I(s) - 1) each period, -1 the reverse; periods
// every `tenor` (a backward schedule from the end date, Modified Following on the centres, both
// legs accruing by one day counter). Failures read "MYearOnYearInflationSwap::<operation> failed: ".
#pragma once

#include <string>
#include <vector>

#include <boost/shared_ptr.hpp>

#include "DateInput.hpp"
#include "MWrapper.hpp"
#include "lum-interest-rates/YearOnYearInflationSwap.hpp"

namespace zep::python {

class MYearOnYearInflationSwap : public MWrapper<zep::YearOnYearInflationSwap> {
public:
    MYearOnYearInflationSwap(int payFixed, double notional, double fixedRate, const DateInput& startDate,
                             const DateInput& endDate, boost::shared_ptr<zep::ZeroInflationCurve> inflationCurve,
                             boost::shared_ptr<zep::YieldCurve> discountCurve, const std::string& tenor = "1Y",
                             const zep::DayCounter& dayCounter = zep::DayCounter(zep::Thirty360),
                             const std::string& centres = "TARGET");

    double PV() const;
    double NPV() const { return PV(); }
    double FairRate() const;
    double ParRate() const { return FairRate(); }
    double InflationLegPV() const;
    double FixedLegPV() const;
    // Each period's forward inflation I(e) / I(s) - 1, paid or not.
    std::vector<double> PeriodInflation() const;
    std::vector<zep::CashFlow> CashFlowSchedule() const;
    std::string Describe() const;

private:
    boost::shared_ptr<zep::ZeroInflationCurve> m_inflation;
    boost::shared_ptr<zep::YieldCurve> m_discount;
};

}  // namespace zep::python
