// The Python face of a fixed-rate bond, bullet or amortising (one notional per coupon period):
// coupons accrue unadjusted and pay on the following business day. Prices are per 100; yields
// compound at the coupon frequency (in the last period, simple on request: the US street
// convention). PV, Z-spread and cash flows need the discount curve.
// Failures read "MBond::<operation> failed: ".
#pragma once

#include <string>
#include <vector>

#include "DateInput.hpp"
#include "MWrapper.hpp"
#include "lum-interest-rates/Bond.hpp"

namespace zep::python {

class MBond : public MWrapper<zep::Bond> {
public:
    MBond(double couponRate, const DateInput& issueDate, const DateInput& maturityDate, const std::string& tenor = "6M",
          const zep::DayCounter& dayCounter = zep::DayCounter(zep::ActActICMA),
          const std::vector<double>& notionals = std::vector<double>(1, 100.0),
          boost::shared_ptr<zep::YieldCurve> discountCurve = boost::shared_ptr<zep::YieldCurve>(),
          const std::string& centres = "", bool endOfMonth = false, bool simpleYieldInLastPeriod = false);

    double AccruedAmount(const DateInput& settlement) const;
    double CleanPrice(double yield, const DateInput& settlement) const;
    double DirtyPrice(double yield, const DateInput& settlement) const;
    double Yield(double cleanPrice, const DateInput& settlement) const;
    double MacaulayDuration(double yield, const DateInput& settlement) const;
    double ModifiedDuration(double yield, const DateInput& settlement) const;
    double Convexity(double yield, const DateInput& settlement) const;
    double PV() const;
    double NPV() const { return PV(); }
    double ZSpread(double cleanPrice, const DateInput& settlement) const;
    std::vector<zep::CashFlow> CashFlowSchedule() const;
    std::string Describe() const;

private:
    friend struct RiskAdapters;  // hands the instrument and its market to the risk layer
    const zep::YieldCurve& Curve(const char* where) const;
    boost::shared_ptr<zep::YieldCurve> m_curve;
};

}  // namespace zep::python
