#include "lum-interest-rates/FloatingRateNote.hpp"

#include <cmath>

#include "lum-auxiliary/Error.hpp"
#include "lum-solvers/RootFinders.hpp"

namespace zep {

namespace {
LegTerms NoteTerms(LegTerms terms) {
    ZEP_REQUIRE(terms.kind == CouponKind::Floating, "FRN: the coupons must be floating (IBOR).");
    ZEP_REQUIRE(terms.notionals.size() == 1 && terms.notionals.front() > 0.0, "FRN: give one positive face value.");
    terms.exchangeNotional = false;  // the redemption is the note's own flow; nothing is paid at the start
    return terms;
}
}  // namespace

FloatingRateNote::FloatingRateNote(const Schedule& schedule, LegTerms terms, const Calendar& calendar)
    : m_leg(schedule, NoteTerms(std::move(terms)), calendar) {}

double FloatingRateNote::PV(const LegMarket& market) const {
    double value = 0.0;
    for (const CashFlow& row : CashFlows(market)) value += row.presentValue;
    return 100.0 * value / m_leg.Terms().notionals.front();
}

double FloatingRateNote::DiscountMargin(double dirtyPrice, const LegMarket& market) const {
    ZEP_REQUIRE(std::isfinite(dirtyPrice) && dirtyPrice > 0.0,
                "FRN: price '" + std::to_string(dirtyPrice) + "' must be a positive number.");
    ZEP_REQUIRE(market.discount != nullptr, "Leg: no discount curve.");
    YieldCurve shifted = *market.discount;
    LegMarket shiftedMarket = market;
    shiftedMarket.discount = &shifted;
    if (!shiftedMarket.projection) shiftedMarket.projection = market.discount;
    const auto mismatch = [&](double margin) {
        shifted.SetZeroRateSpread(market.discount->ZeroRateSpread() + margin);
        return PV(shiftedMarket) - dirtyPrice;
    };
    if ((mismatch(-0.5) < 0.0) == (mismatch(0.5) < 0.0))
        ZEP_FAIL("FRN: no discount margin between -50% and 50% gives the price '" + std::to_string(dirtyPrice) + "'.");
    return BrentSolve(mismatch, -0.5, 0.5, {1e-13, 200});
}

std::vector<CashFlow> FloatingRateNote::CashFlows(const LegMarket& market) const {
    std::vector<CashFlow> rows = m_leg.CashFlows(market);
    if (m_leg.EndDate() > market.discount->ReferenceDate() && !rows.empty()) {
        CashFlow redemption = rows.back();
        redemption.kind = CashFlowKind::Notional;
        redemption.accrualFraction = redemption.rate = 0.0;
        redemption.fixingDate = Date();
        redemption.amount = redemption.notional;
        redemption.presentValue = redemption.amount * redemption.discountFactor;
        rows.push_back(redemption);
    }
    return rows;
}

std::string FloatingRateNote::Describe() const {
    const LegTerms& terms = m_leg.Terms();
    return "Floating-rate note on " + terms.index + " + " + std::to_string(terms.spread) + ", face " +
           std::to_string(terms.notionals.front()) + ", " + m_leg.StartDate().ToString() + " to " +
           m_leg.EndDate().ToString() + ".";
}

}  // namespace zep
