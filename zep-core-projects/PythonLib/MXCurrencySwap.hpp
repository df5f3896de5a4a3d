// The Python face of a cross-currency swap: receive a domestic leg, pay a foreign one, each
// FIXED, IBOR or OVERNIGHT on its own notional, with the notionals exchanged at the start and
// returned at the end. Each leg is valued on its own curves; the foreign leg converts at spot
// (domestic per foreign), so the PV is in the domestic currency. Marked to market, one leg's
// notional (resettingLeg DOMESTIC or FOREIGN) resets every period to the other leg's notional at
// the FX rate fixed for that period (domestic per foreign, published under `fxIndex`; the
// forward from spot and the two discount curves until then), and the change is exchanged.
// Failures read "MXCurrencySwap::<operation> failed: ".
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "MWrapper.hpp"
#include "RateInputs.hpp"
#include "lum-interest-rates/Swap.hpp"

namespace zep::python {

class MXCurrencySwap : public MWrapper<zep::Swap> {
public:
    MXCurrencySwap(double domesticNotional, double foreignNotional, const DateInput& startDate,
                   const DateInput& endDate, double spot, boost::shared_ptr<zep::YieldCurve> domesticDiscountCurve,
                   boost::shared_ptr<zep::YieldCurve> foreignDiscountCurve,
                   const std::string& domesticKind = "IBOR", double domesticRate = 0.0,
                   const std::string& foreignKind = "IBOR", double foreignRate = 0.0,
                   const std::string& domesticIndex = "DOMESTIC", const std::string& foreignIndex = "FOREIGN",
                   const std::string& tenor = "3M", const zep::DayCounter& dayCounter = zep::DayCounter(zep::Act360),
                   boost::shared_ptr<zep::YieldCurve> domesticProjectionCurve = boost::shared_ptr<zep::YieldCurve>(),
                   boost::shared_ptr<zep::YieldCurve> foreignProjectionCurve = boost::shared_ptr<zep::YieldCurve>(),
                   const std::string& centres = "TARGET", int fixingLagDays = 2,
                   boost::shared_ptr<zep::FixingStore> fixings = boost::shared_ptr<zep::FixingStore>(),
                   const std::string& resettingLeg = "NONE", const std::string& fxIndex = "FX");

    double PV() const;
    double NPV() const { return PV(); }
    // The domestic leg's fixed rate or spread that makes the swap worth nothing.
    double ParSpread() const;
    double DomesticLegPV() const;
    double ForeignLegPV() const;  // in the domestic currency
    std::vector<zep::CashFlow> CashFlowSchedule() const;  // each leg in its own currency
    std::string Describe() const;

private:
    friend struct RiskAdapters;  // hands the instrument and its market to the risk layer
    // A leg's market: its curves, the rate converting it to domestic, and the pair it may reset on.
    zep::LegMarket MarketOf(const CurvePair& curves, double fxRate) const;

    std::optional<CurvePair> m_domestic, m_foreign;
    double m_spot = 0.0;
    zep::FXMarket m_pair;  // foreign (base) in domestic (quote), spot for the valuation date
};

}  // namespace zep::python
