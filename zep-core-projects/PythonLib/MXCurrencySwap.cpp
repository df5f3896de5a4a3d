#include "MXCurrencySwap.hpp"

#include <boost/make_shared.hpp>

#include "lum-time/Calendar.hpp"

namespace zep::python {

namespace {

zep::Leg CurrencyLeg(const std::string& kind, double notional, double rate, const std::string& index,
                     const zep::Schedule& schedule) {
    zep::LegTerms terms;
    const bool fixed = kind == "FIXED" || kind == "fixed" || kind == "Fixed";
    terms.kind = fixed ? zep::CouponKind::Fixed : FloatingKindOf(kind);
    terms.notionals = {notional};
    (fixed ? terms.fixedRate : terms.spread) = rate;
    terms.index = index;
    terms.exchangeNotional = true;
    return zep::Leg(schedule, terms, zep::Calendar::Shared());
}

}  // namespace

MXCurrencySwap::MXCurrencySwap(double domesticNotional, double foreignNotional, const DateInput& startDate,
                               const DateInput& endDate, double spot,
                               boost::shared_ptr<zep::YieldCurve> domesticDiscountCurve,
                               boost::shared_ptr<zep::YieldCurve> foreignDiscountCurve,
                               const std::string& domesticKind, double domesticRate, const std::string& foreignKind,
                               double foreignRate, const std::string& domesticIndex, const std::string& foreignIndex,
                               const std::string& tenor, const zep::DayCounter& dayCounter,
                               boost::shared_ptr<zep::YieldCurve> domesticProjectionCurve,
                               boost::shared_ptr<zep::YieldCurve> foreignProjectionCurve, const std::string& centres,
                               int fixingLagDays, boost::shared_ptr<zep::FixingStore> fixings) {
    Guarded("MXCurrencySwap::MXCurrencySwap", [&] {
        if (!(spot > 0.0)) throw std::invalid_argument("FX spot '" + std::to_string(spot) + "' must be a positive number.");
        CurvePair domestic(domesticDiscountCurve, domesticProjectionCurve, fixings, "MXCurrencySwap (domestic)");
        CurvePair foreign(foreignDiscountCurve, foreignProjectionCurve, fixings, "MXCurrencySwap (foreign)");
        const zep::Schedule schedule = MakeSchedule(startDate, endDate, {tenor, dayCounter, centres, fixingLagDays, 0});
        auto swap = boost::make_shared<zep::Swap>(CurrencyLeg(domesticKind, domesticNotional, domesticRate, domesticIndex, schedule),
                                                  CurrencyLeg(foreignKind, foreignNotional, foreignRate, foreignIndex, schedule));
        swap->PV(domestic.Market(), foreign.Market(spot));
        m_domestic.emplace(std::move(domestic));
        m_foreign.emplace(std::move(foreign));
        m_spot = spot;
        m_object = std::move(swap);
    });
}

double MXCurrencySwap::PV() const {
    return Guarded("MXCurrencySwap::PV", [&] {
        return Object("zep::python::MXCurrencySwap::PV").PV(m_domestic->Market(), m_foreign->Market(m_spot));
    });
}

double MXCurrencySwap::ParSpread() const {
    return Guarded("MXCurrencySwap::ParSpread", [&] {
        return Object("zep::python::MXCurrencySwap::ParSpread")
            .ParCoupon(zep::SwapSide::Receive, m_domestic->Market(), m_foreign->Market(m_spot));
    });
}

double MXCurrencySwap::DomesticLegPV() const {
    return Guarded("MXCurrencySwap::DomesticLegPV", [&] {
        return Object("zep::python::MXCurrencySwap::DomesticLegPV").LegOn(zep::SwapSide::Receive).PV(m_domestic->Market());
    });
}

double MXCurrencySwap::ForeignLegPV() const {
    return Guarded("MXCurrencySwap::ForeignLegPV", [&] {
        return Object("zep::python::MXCurrencySwap::ForeignLegPV").LegOn(zep::SwapSide::Pay).PV(m_foreign->Market(m_spot));
    });
}

std::vector<zep::CashFlow> MXCurrencySwap::CashFlowSchedule() const {
    return Guarded("MXCurrencySwap::CashFlowSchedule", [&] {
        return Object("zep::python::MXCurrencySwap::CashFlowSchedule").CashFlows(m_domestic->Market(), m_foreign->Market());
    });
}

std::string MXCurrencySwap::Describe() const {
    return Guarded("MXCurrencySwap::Describe", [&] { return Object("zep::python::MXCurrencySwap::Describe").Describe(); });
}

}  // namespace zep::python
