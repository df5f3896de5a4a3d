#include "MFXNDF.hpp"

#include <boost/make_shared.hpp>

namespace zep::python {

MFXNDF::MFXNDF(int buySell, double baseNotional, double contractRate, const DateInput& fixingDate,
               const DateInput& settlementDate, double spot, const DateInput& spotDate,
               boost::shared_ptr<zep::YieldCurve> quoteCurve, boost::shared_ptr<zep::YieldCurve> baseCurve,
               const std::string& fixingIndex, boost::shared_ptr<zep::FixingStore> fixings) {
    Guarded("MFXNDF::MFXNDF", [&] {
        FXCurves market(spot, spotDate, quoteCurve, baseCurve, "MFXNDF");
        m_object = boost::make_shared<zep::NDF>(buySell, baseNotional, contractRate, fixingDate.Value(),
                                                settlementDate.Value(), fixingIndex);
        m_market.emplace(std::move(market));
        m_fixings = std::move(fixings);
    });
}

double MFXNDF::NPV() const {
    return Guarded("MFXNDF::NPV", [&] { return Object("zep::python::MFXNDF::NPV").PV(m_market->Market(), m_fixings.get()); });
}

double MFXNDF::Price() const {
    return Guarded("MFXNDF::Price", [&] {
        return Object("zep::python::MFXNDF::Price").Price(m_market->Market(), m_fixings.get());
    });
}

std::vector<zep::CashFlow> MFXNDF::CashFlowSchedule() const {
    return Guarded("MFXNDF::CashFlowSchedule", [&] {
        return Object("zep::python::MFXNDF::CashFlowSchedule").CashFlows(m_market->Market(), m_fixings.get());
    });
}

std::string MFXNDF::Describe() const {
    return Guarded("MFXNDF::Describe", [&] { return Object("zep::python::MFXNDF::Describe").Describe(); });
}

}  // namespace zep::python
