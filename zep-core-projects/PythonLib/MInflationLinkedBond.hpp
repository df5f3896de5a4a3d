// The Python face of an inflation-linked bond: a fixed-rate bond in real terms (coupons accrue
// unadjusted and pay on the following business day, as MBond) whose payments are scaled by the
// index ratio from the issue date to each accrual end. Failures read
// "MInflationLinkedBond::<operation> failed: ".
#pragma once

#include <string>
#include <vector>

#include <boost/shared_ptr.hpp>

#include "DateInput.hpp"
#include "MWrapper.hpp"
#include "lum-interest-rates/InflationLinkedBond.hpp"

namespace zep::python {

class MInflationLinkedBond : public MWrapper<zep::InflationLinkedBond> {
public:
    MInflationLinkedBond(double realCoupon, const DateInput& issueDate, const DateInput& maturityDate,
                         boost::shared_ptr<zep::ZeroInflationCurve> inflationCurve,
                         boost::shared_ptr<zep::YieldCurve> discountCurve, const std::string& tenor = "1Y",
                         const zep::DayCounter& dayCounter = zep::DayCounter(zep::ActActICMA),
                         const std::vector<double>& notionals = std::vector<double>(1, 100.0),
                         const std::string& centres = "", bool endOfMonth = false);

    double PV() const;
    double NPV() const { return PV(); }
    double IndexRatio(const DateInput& date) const;
    std::vector<zep::CashFlow> CashFlowSchedule() const;
    std::string Describe() const;

private:
    boost::shared_ptr<zep::ZeroInflationCurve> m_inflation;
    boost::shared_ptr<zep::YieldCurve> m_discount;
};

}  // namespace zep::python
