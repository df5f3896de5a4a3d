// The Python face of a credit default swap on a credit curve: protection bought (BUYER) or sold
// (SELLER) from startDate to maturityDate, the coupon paid every premiumTenor (a backward schedule
// from the maturity, Act/360 by default), the recovery rate the credit curve's. Failures read
// "MCreditDefaultSwap::<operation> failed: ".
#pragma once

#include <string>
#include <vector>

#include <boost/shared_ptr.hpp>

#include "MWrapper.hpp"
#include "RateInputs.hpp"
#include "lum-interest-rates/CreditDefaultSwap.hpp"

namespace zep::python {

class MCreditDefaultSwap : public MWrapper<zep::CreditDefaultSwap> {
public:
    MCreditDefaultSwap(const std::string& buySell, double notional, double coupon, const DateInput& startDate,
                       const DateInput& maturityDate, const zep::CreditCurve* creditCurve,
                       boost::shared_ptr<zep::YieldCurve> discountCurve, const std::string& premiumTenor = "3M",
                       const zep::DayCounter& dayCounter = zep::DayCounter(zep::Act360),
                       const std::string& centres = "TARGET");

    double PV() const;
    double NPV() const { return PV(); }
    double ParSpread() const;
    // The rows of CashFlows(): one CashflowScheduleRow each, in a CashFlowVector.
    std::vector<zep::CashFlow> CashFlowSchedule() const;
    // The buyer's upfront as a fraction of the notional.
    double Upfront() const;
    double ProtectionLegPV() const;
    double PremiumLegPV() const;
    double RiskyAnnuity() const;
    // The premium leg's value of one basis point of coupon.
    double RiskyPV01() const;
    double CS01() const;
    double UpfrontFromQuotedSpread(double quotedSpread) const;
    double QuotedSpreadFromUpfront(double upfront) const;
    std::string Describe() const;

private:
    boost::shared_ptr<const zep::CreditCurve> m_credit;
    boost::shared_ptr<zep::YieldCurve> m_discount;
};

}  // namespace zep::python
