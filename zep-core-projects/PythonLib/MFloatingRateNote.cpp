#include "MFloatingRateNote.hpp"

#include <boost/make_shared.hpp>

#include "lum-time/Calendar.hpp"

namespace zep::python {

MFloatingRateNote::MFloatingRateNote(double faceValue, double quotedMargin, const DateInput& issueDate,
                                     const DateInput& maturityDate, boost::shared_ptr<zep::YieldCurve> discountCurve,
                                     boost::shared_ptr<zep::YieldCurve> projectionCurve, const std::string& index,
                                     const std::string& tenor, const zep::DayCounter& dayCounter,
                                     const std::string& centres, int fixingLagDays,
                                     boost::shared_ptr<zep::FixingStore> fixings) {
    Guarded("MFloatingRateNote::MFloatingRateNote", [&] {
        CurvePair curves(discountCurve, projectionCurve, fixings, "MFloatingRateNote");
        zep::LegTerms terms;
        terms.kind = zep::CouponKind::Floating;
        terms.notionals = {faceValue};
        terms.index = index;
        terms.spread = quotedMargin;
        auto note = boost::make_shared<zep::FloatingRateNote>(
            MakeSchedule(issueDate, maturityDate, {tenor, dayCounter, centres, fixingLagDays, 0}), terms,
            zep::Calendar::Shared());
        note->PV(curves.Market());
        m_curves.emplace(std::move(curves));
        m_object = std::move(note);
    });
}

double MFloatingRateNote::PV() const {
    return Guarded("MFloatingRateNote::PV", [&] {
        return Object("zep::python::MFloatingRateNote::PV").PV(m_curves->Market());
    });
}

double MFloatingRateNote::DiscountMargin(double dirtyPrice) const {
    return Guarded("MFloatingRateNote::DiscountMargin", [&] {
        return Object("zep::python::MFloatingRateNote::DiscountMargin").DiscountMargin(dirtyPrice, m_curves->Market());
    });
}

std::vector<zep::CashFlow> MFloatingRateNote::CashFlowSchedule() const {
    return Guarded("MFloatingRateNote::CashFlowSchedule", [&] {
        return Object("zep::python::MFloatingRateNote::CashFlowSchedule").CashFlows(m_curves->Market());
    });
}

std::string MFloatingRateNote::Describe() const {
    return Guarded("MFloatingRateNote::Describe", [&] {
        return Object("zep::python::MFloatingRateNote::Describe").Describe();
    });
}

}  // namespace zep::python
