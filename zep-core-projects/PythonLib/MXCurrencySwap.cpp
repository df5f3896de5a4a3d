#include "MXCurrencySwap.hpp"

#include <boost/make_shared.hpp>

#include "lum-time/Calendar.hpp"

namespace zep::python {

namespace {

zep::LegTerms CurrencyTerms(const std::string& kind, double notional, double rate, const std::string& index) {
    zep::LegTerms terms;
    const bool fixed = kind == "FIXED" || kind == "fixed" || kind == "Fixed";
    terms.kind = fixed ? zep::CouponKind::Fixed : FloatingKindOf(kind);
    terms.notionals = {notional};
    (fixed ? terms.fixedRate : terms.spread) = rate;
    terms.index = index;
    terms.exchangeNotional = true;
    return terms;
}

}  // namespace

zep::LegMarket MXCurrencySwap::MarketOf(const CurvePair& curves, double fxRate) const {
    zep::LegMarket market = curves.Market(fxRate);
    market.resetFX = &m_pair;
    return market;
}

MXCurrencySwap::MXCurrencySwap(double domesticNotional, double foreignNotional, const DateInput& startDate,
                               const DateInput& endDate, double spot,
                               boost::shared_ptr<zep::YieldCurve> domesticDiscountCurve,
                               boost::shared_ptr<zep::YieldCurve> foreignDiscountCurve,
                               const std::string& domesticKind, double domesticRate, const std::string& foreignKind,
                               double foreignRate, const std::string& domesticIndex, const std::string& foreignIndex,
                               const std::string& tenor, const zep::DayCounter& dayCounter,
                               boost::shared_ptr<zep::YieldCurve> domesticProjectionCurve,
                               boost::shared_ptr<zep::YieldCurve> foreignProjectionCurve, const std::string& centres,
                               int fixingLagDays, boost::shared_ptr<zep::FixingStore> fixings,
                               const std::string& resettingLeg, const std::string& fxIndex) {
    Guarded("MXCurrencySwap::MXCurrencySwap", [&] {
        if (!(spot > 0.0)) throw std::invalid_argument("FX spot '" + std::to_string(spot) + "' must be a positive number.");
        CurvePair domestic(domesticDiscountCurve, domesticProjectionCurve, fixings, "MXCurrencySwap (domestic)");
        CurvePair foreign(foreignDiscountCurve, foreignProjectionCurve, fixings, "MXCurrencySwap (foreign)");
        const zep::Schedule schedule = MakeSchedule(startDate, endDate, {tenor, dayCounter, centres, fixingLagDays, 0});
        zep::LegTerms domesticTerms = CurrencyTerms(domesticKind, domesticNotional, domesticRate, domesticIndex);
        zep::LegTerms foreignTerms = CurrencyTerms(foreignKind, foreignNotional, foreignRate, foreignIndex);
        const int resetting = ChoiceOf(resettingLeg, {"NONE", "DOMESTIC", "FOREIGN"}, "resetting leg");
        if (resetting != 0) {
            if (fxIndex.empty()) throw std::invalid_argument("a mark-to-market swap needs the name of its FX fixing (fxIndex).");
            zep::LegTerms& terms = resetting == 1 ? domesticTerms : foreignTerms;
            terms.resetIndex = fxIndex;
            terms.resetNotional = resetting == 1 ? foreignNotional : domesticNotional;
            terms.resetRateInverted = resetting == 2;  // the rate quotes domestic per foreign
        }
        const auto& calendar = zep::Calendar::Shared();
        auto swap = boost::make_shared<zep::Swap>(zep::Leg(schedule, domesticTerms, calendar),
                                                  zep::Leg(schedule, foreignTerms, calendar));
        m_pair = {spot, domestic.discount->ReferenceDate(), domestic.discount.get(), foreign.discount.get()};
        swap->PV(MarketOf(domestic, 1.0), MarketOf(foreign, spot));  // a missing past fixing fails here
        m_domestic.emplace(std::move(domestic));
        m_foreign.emplace(std::move(foreign));
        m_spot = spot;
        m_object = std::move(swap);
    });
}

double MXCurrencySwap::PV() const {
    return Guarded("MXCurrencySwap::PV", [&] {
        return Object("zep::python::MXCurrencySwap::PV").PV(MarketOf(*m_domestic, 1.0), MarketOf(*m_foreign, m_spot));
    });
}

double MXCurrencySwap::ParSpread() const {
    return Guarded("MXCurrencySwap::ParSpread", [&] {
        return Object("zep::python::MXCurrencySwap::ParSpread")
            .ParCoupon(zep::SwapSide::Receive, MarketOf(*m_domestic, 1.0), MarketOf(*m_foreign, m_spot));
    });
}

double MXCurrencySwap::DomesticLegPV() const {
    return Guarded("MXCurrencySwap::DomesticLegPV", [&] {
        return Object("zep::python::MXCurrencySwap::DomesticLegPV")
            .LegOn(zep::SwapSide::Receive)
            .PV(MarketOf(*m_domestic, 1.0));
    });
}

double MXCurrencySwap::ForeignLegPV() const {
    return Guarded("MXCurrencySwap::ForeignLegPV", [&] {
        return Object("zep::python::MXCurrencySwap::ForeignLegPV")
            .LegOn(zep::SwapSide::Pay)
            .PV(MarketOf(*m_foreign, m_spot));
    });
}

std::vector<zep::CashFlow> MXCurrencySwap::CashFlowSchedule() const {
    return Guarded("MXCurrencySwap::CashFlowSchedule", [&] {
        return Object("zep::python::MXCurrencySwap::CashFlowSchedule")
            .CashFlows(MarketOf(*m_domestic, 1.0), MarketOf(*m_foreign, 1.0));
    });
}

std::string MXCurrencySwap::Describe() const {
    return Guarded("MXCurrencySwap::Describe", [&] { return Object("zep::python::MXCurrencySwap::Describe").Describe(); });
}

}  // namespace zep::python
