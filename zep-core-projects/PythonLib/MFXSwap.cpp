#include "MFXSwap.hpp"

#include <boost/make_shared.hpp>

namespace zep::python {

MFXSwap::MFXSwap(int nearBuySell, double baseNotional, double nearRate, const DateInput& nearDate, double farRate,
                 const DateInput& farDate, double spot, const DateInput& spotDate,
                 boost::shared_ptr<zep::YieldCurve> quoteCurve, boost::shared_ptr<zep::YieldCurve> baseCurve) {
    Guarded("MFXSwap::MFXSwap", [&] {
        FXCurves market(spot, spotDate, quoteCurve, baseCurve, "MFXSwap");
        m_object = boost::make_shared<zep::FXSwap>(nearBuySell, baseNotional, nearRate, nearDate.Value(), farRate,
                                                   farDate.Value());
        m_market.emplace(std::move(market));
    });
}

double MFXSwap::NPV() const {
    return Guarded("MFXSwap::NPV", [&] { return Object("zep::python::MFXSwap::NPV").PV(m_market->Market()); });
}

double MFXSwap::FairFarRate() const {
    return Guarded("MFXSwap::FairFarRate", [&] {
        return Object("zep::python::MFXSwap::FairFarRate").FairFarRate(m_market->Market());
    });
}

std::vector<zep::CashFlow> MFXSwap::CashFlowSchedule() const {
    return Guarded("MFXSwap::CashFlowSchedule", [&] {
        return Object("zep::python::MFXSwap::CashFlowSchedule").CashFlows(m_market->Market());
    });
}

std::string MFXSwap::Describe() const {
    return Guarded("MFXSwap::Describe", [&] { return Object("zep::python::MFXSwap::Describe").Describe(); });
}

}  // namespace zep::python
