#include "MBill.hpp"

#include <boost/make_shared.hpp>

namespace zep::python {

MBill::MBill(double faceValue, const DateInput& maturityDate, const zep::DayCounter& dayCounter,
             boost::shared_ptr<zep::YieldCurve> discountCurve) {
    Guarded("MBill::MBill", [&] {
        m_object = boost::make_shared<zep::Bill>(faceValue, maturityDate.Value(), dayCounter);
        m_curve = std::move(discountCurve);
    });
}

const zep::YieldCurve& MBill::Curve(const char* where) const {
    if (!m_curve) throw std::invalid_argument(std::string(where) + ": the bill was built without a discount curve.");
    return *m_curve;
}

double MBill::PriceFromDiscountYield(double discountYield, const DateInput& settlement) const {
    return Guarded("MBill::PriceFromDiscountYield", [&] {
        return Object("zep::python::MBill::PriceFromDiscountYield").PriceFromDiscountYield(discountYield, settlement.Value());
    });
}

double MBill::DiscountYield(double price, const DateInput& settlement) const {
    return Guarded("MBill::DiscountYield", [&] {
        return Object("zep::python::MBill::DiscountYield").DiscountYield(price, settlement.Value());
    });
}

double MBill::PriceFromMoneyMarketYield(double yield, const DateInput& settlement) const {
    return Guarded("MBill::PriceFromMoneyMarketYield", [&] {
        return Object("zep::python::MBill::PriceFromMoneyMarketYield").PriceFromMoneyMarketYield(yield, settlement.Value());
    });
}

double MBill::MoneyMarketYield(double price, const DateInput& settlement) const {
    return Guarded("MBill::MoneyMarketYield", [&] {
        return Object("zep::python::MBill::MoneyMarketYield").MoneyMarketYield(price, settlement.Value());
    });
}

double MBill::PV() const {
    return Guarded("MBill::PV", [&] { return Object("zep::python::MBill::PV").PV(Curve("MBill::PV")); });
}

std::vector<zep::CashFlow> MBill::CashFlowSchedule() const {
    return Guarded("MBill::CashFlowSchedule", [&] {
        return Object("zep::python::MBill::CashFlowSchedule").CashFlows(Curve("MBill::CashFlowSchedule"));
    });
}

std::string MBill::Describe() const {
    return Guarded("MBill::Describe", [&] { return Object("zep::python::MBill::Describe").Describe(); });
}

}  // namespace zep::python
