// The Python face of a bill: prices from discount or money-market yields and back, PV and cash
// flow on the discount curve when one is given. Failures read "MBill::<operation> failed: ".
#pragma once

#include <string>
#include <vector>

#include "DateInput.hpp"
#include "MWrapper.hpp"
#include "lum-interest-rates/Bill.hpp"

namespace zep::python {

class MBill : public MWrapper<zep::Bill> {
public:
    MBill(double faceValue, const DateInput& maturityDate,
          const zep::DayCounter& dayCounter = zep::DayCounter(zep::Act360),
          boost::shared_ptr<zep::YieldCurve> discountCurve = boost::shared_ptr<zep::YieldCurve>());

    double PriceFromDiscountYield(double discountYield, const DateInput& settlement) const;
    double DiscountYield(double price, const DateInput& settlement) const;
    double PriceFromMoneyMarketYield(double yield, const DateInput& settlement) const;
    double MoneyMarketYield(double price, const DateInput& settlement) const;
    double PV() const;
    double NPV() const { return PV(); }
    std::vector<zep::CashFlow> CashFlowSchedule() const;
    std::string Describe() const;

private:
    friend struct RiskAdapters;  // hands the instrument and its market to the risk layer
    const zep::YieldCurve& Curve(const char* where) const;
    boost::shared_ptr<zep::YieldCurve> m_curve;
};

}  // namespace zep::python
