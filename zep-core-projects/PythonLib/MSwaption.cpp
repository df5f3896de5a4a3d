#include "MSwaption.hpp"

#include <boost/make_shared.hpp>

#include "lum-time/Calendar.hpp"

namespace zep::python {

MSwaption::MSwaption(const std::string& payerReceiver, double notional, double strike, const DateInput& expiryDate,
                     const DateInput& startDate, const DateInput& endDate,
                     boost::shared_ptr<zep::YieldCurve> discountCurve,
                     boost::shared_ptr<zep::YieldCurve> projectionCurve, double volatility, const std::string& model,
                     double shift, const std::string& settlement, const std::string& fixedTenor,
                     const zep::DayCounter& fixedDayCounter, const std::string& floatTenor,
                     const zep::DayCounter& floatDayCounter, const std::string& centres, int fixingLagDays,
                     const std::string& index) {
    Guarded("MSwaption::MSwaption", [&] {
        const auto kind = static_cast<zep::SwaptionKind>(ChoiceOf(payerReceiver, {"PAYER", "RECEIVER"}, "swaption kind"));
        const auto settled =
            static_cast<zep::SwaptionSettlement>(ChoiceOf(settlement, {"PHYSICAL", "CASH"}, "settlement"));
        CurvePair curves(discountCurve, projectionCurve, nullptr, "MSwaption");
        const zep::RateVolatility quoted{zep::RateVolatilityModelOf(model.c_str()), volatility, shift};
        auto swaption = boost::make_shared<zep::Swaption>(
            MakeSchedule(startDate, endDate, {fixedTenor, fixedDayCounter, centres, fixingLagDays, 0}),
            MakeSchedule(startDate, endDate, {floatTenor, floatDayCounter, centres, fixingLagDays, 0}), kind, strike,
            notional, expiryDate.Value(), settled, zep::Calendar::Shared(), index);
        swaption->PV(curves.Market(), quoted);  // bad rates or volatility fail here
        m_curves.emplace(std::move(curves));
        m_volatility = quoted;
        m_object = std::move(swaption);
    });
}

double MSwaption::PV() const {
    return Guarded("MSwaption::PV",
                   [&] { return Object("zep::python::MSwaption::PV").PV(m_curves->Market(), m_volatility); });
}

double MSwaption::ForwardRate() const {
    return Guarded("MSwaption::ForwardRate",
                   [&] { return Object("zep::python::MSwaption::ForwardRate").ForwardRate(m_curves->Market()); });
}

double MSwaption::Annuity() const {
    return Guarded("MSwaption::Annuity",
                   [&] { return Object("zep::python::MSwaption::Annuity").Annuity(m_curves->Market()); });
}

double MSwaption::ForwardSwapValue() const {
    return Guarded("MSwaption::ForwardSwapValue", [&] {
        return Object("zep::python::MSwaption::ForwardSwapValue").ForwardSwapValue(m_curves->Market());
    });
}

double MSwaption::ImpliedVolatility(double price) const {
    return Guarded("MSwaption::ImpliedVolatility", [&] {
        return Object("zep::python::MSwaption::ImpliedVolatility")
            .ImpliedVolatility(price, m_curves->Market(), m_volatility.model, m_volatility.shift);
    });
}

std::string MSwaption::Describe() const {
    return Guarded("MSwaption::Describe", [&] { return Object("zep::python::MSwaption::Describe").Describe(); });
}

std::vector<zep::CashFlow> MSwaption::CashFlowSchedule() const {
    return Guarded("MSwaption::CashFlowSchedule", [&] {
        return Object("zep::python::MSwaption::CashFlowSchedule").CashFlows(m_curves->Market(), m_volatility);
    });
}

}  // namespace zep::python
