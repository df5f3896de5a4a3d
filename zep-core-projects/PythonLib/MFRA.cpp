#include "MFRA.hpp"

#include <boost/make_shared.hpp>

#include "lum-time/Calendar.hpp"
#include "lum-time/Schedule.hpp"

namespace zep::python {

MFRA::MFRA(int buySell, double notional, double contractRate, const DateInput& startDate, const DateInput& endDate,
           boost::shared_ptr<zep::YieldCurve> discountCurve, boost::shared_ptr<zep::YieldCurve> projectionCurve,
           const std::string& index, const zep::DayCounter& dayCounter, const std::string& centres, int fixingLagDays,
           boost::shared_ptr<zep::FixingStore> fixings) {
    Guarded("MFRA::MFRA", [&] {
        CurvePair curves(discountCurve, projectionCurve, fixings, "MFRA");
        const zep::Date start = startDate.Value();
        const zep::Date fixing = zep::AdvanceBusinessDays(zep::Calendar::Shared(), start, -fixingLagDays, centres);
        auto fra = boost::make_shared<zep::FRA>(buySell, notional, contractRate, fixing, start, endDate.Value(), index,
                                                dayCounter);
        fra->PV(curves.Market());  // a missing past fixing fails here, not at the first query
        m_curves.emplace(std::move(curves));
        m_object = std::move(fra);
    });
}

double MFRA::PV() const {
    return Guarded("MFRA::PV", [&] { return Object("zep::python::MFRA::PV").PV(m_curves->Market()); });
}

double MFRA::ParRate() const {
    return Guarded("MFRA::ParRate", [&] { return Object("zep::python::MFRA::ParRate").ParRate(m_curves->Market()); });
}

std::vector<zep::CashFlow> MFRA::CashFlowSchedule() const {
    return Guarded("MFRA::CashFlowSchedule", [&] {
        return Object("zep::python::MFRA::CashFlowSchedule").CashFlows(m_curves->Market());
    });
}

std::string MFRA::Describe() const {
    return Guarded("MFRA::Describe", [&] { return Object("zep::python::MFRA::Describe").Describe(); });
}

}  // namespace zep::python
