#include "MVanillaSwap.hpp"

#include <boost/make_shared.hpp>

#include "lum-time/Calendar.hpp"

namespace zep::python {

MVanillaSwap::MVanillaSwap(int payFixed, double notional, double fixedRate, const DateInput& startDate,
                           const DateInput& endDate, boost::shared_ptr<zep::YieldCurve> discountCurve,
                           boost::shared_ptr<zep::YieldCurve> projectionCurve, const std::string& index,
                           const std::string& floatingKind, double spread, const std::string& fixedTenor,
                           const zep::DayCounter& fixedDayCounter, const std::string& floatTenor,
                           const zep::DayCounter& floatDayCounter, const std::string& centres, int fixingLagDays,
                           int paymentLagDays, double gearing, bool inArrears, int lookbackDays, int lockoutDays,
                           bool observationShift, boost::shared_ptr<zep::FixingStore> fixings,
                           const std::vector<double>& fixedNotionals, const std::vector<double>& floatNotionals) {
    Guarded("MVanillaSwap::MVanillaSwap", [&] {
        if (payFixed != 1 && payFixed != -1) throw std::invalid_argument("payFixed must be +1 (pay) or -1 (receive).");
        CurvePair curves(discountCurve, projectionCurve, fixings, "MVanillaSwap");
        zep::LegTerms fixedTerms;
        const auto notionalsOr = [notional](const std::vector<double>& steps) {
            return steps.empty() ? std::vector<double>{notional} : steps;
        };
        fixedTerms.notionals = notionalsOr(fixedNotionals);
        fixedTerms.fixedRate = fixedRate;
        zep::LegTerms floatTerms;
        floatTerms.kind = FloatingKindOf(floatingKind);
        floatTerms.notionals = notionalsOr(floatNotionals);
        floatTerms.index = index;
        floatTerms.indexTenor = zep::Period(floatTenor);
        floatTerms.spread = spread;
        floatTerms.gearing = gearing;
        floatTerms.inArrears = inArrears;
        floatTerms.lookbackDays = lookbackDays;
        floatTerms.lockoutDays = lockoutDays;
        floatTerms.observationShift = observationShift;
        const auto& calendar = zep::Calendar::Shared();
        zep::Leg fixedLeg(MakeSchedule(startDate, endDate, {fixedTenor, fixedDayCounter, centres, fixingLagDays, paymentLagDays}),
                          fixedTerms, calendar);
        zep::Leg floatLeg(MakeSchedule(startDate, endDate, {floatTenor, floatDayCounter, centres, fixingLagDays, paymentLagDays}),
                          floatTerms, calendar);
        auto swap = payFixed == 1 ? boost::make_shared<zep::Swap>(floatLeg, fixedLeg)
                                  : boost::make_shared<zep::Swap>(fixedLeg, floatLeg);
        swap->PV(curves.Market(), curves.Market());  // a missing past fixing fails here, not at the first query
        m_curves.emplace(std::move(curves));
        m_payFixed = payFixed == 1;
        m_object = std::move(swap);
    });
}

double MVanillaSwap::PV() const {
    return Guarded("MVanillaSwap::PV", [&] {
        return Object("zep::python::MVanillaSwap::PV").PV(m_curves->Market(), m_curves->Market());
    });
}

double MVanillaSwap::ParRate() const {
    return Guarded("MVanillaSwap::ParRate", [&] {
        return Object("zep::python::MVanillaSwap::ParRate").ParRate(m_curves->Market(), m_curves->Market());
    });
}

double MVanillaSwap::ParSpread() const {
    return Guarded("MVanillaSwap::ParSpread", [&] {
        const auto side = m_payFixed ? zep::SwapSide::Receive : zep::SwapSide::Pay;
        return Object("zep::python::MVanillaSwap::ParSpread").ParCoupon(side, m_curves->Market(), m_curves->Market());
    });
}

double MVanillaSwap::FixedLegPV() const {
    return Guarded("MVanillaSwap::FixedLegPV", [&] {
        const auto side = m_payFixed ? zep::SwapSide::Pay : zep::SwapSide::Receive;
        return Object("zep::python::MVanillaSwap::FixedLegPV").LegOn(side).PV(m_curves->Market());
    });
}

double MVanillaSwap::FloatingLegPV() const {
    return Guarded("MVanillaSwap::FloatingLegPV", [&] {
        const auto side = m_payFixed ? zep::SwapSide::Receive : zep::SwapSide::Pay;
        return Object("zep::python::MVanillaSwap::FloatingLegPV").LegOn(side).PV(m_curves->Market());
    });
}

double MVanillaSwap::FixedLegBPS() const {
    return Guarded("MVanillaSwap::FixedLegBPS", [&] {
        const auto side = m_payFixed ? zep::SwapSide::Pay : zep::SwapSide::Receive;
        return 1e-4 * Object("zep::python::MVanillaSwap::FixedLegBPS").LegOn(side).Annuity(m_curves->Market());
    });
}

std::vector<zep::CashFlow> MVanillaSwap::CashFlowSchedule() const {
    return Guarded("MVanillaSwap::CashFlowSchedule", [&] {
        return Object("zep::python::MVanillaSwap::CashFlowSchedule").CashFlows(m_curves->Market(), m_curves->Market());
    });
}

std::string MVanillaSwap::Describe() const {
    return Guarded("MVanillaSwap::Describe", [&] { return Object("zep::python::MVanillaSwap::Describe").Describe(); });
}

}  // namespace zep::python
