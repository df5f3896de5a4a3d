#include "lum-interest-rates/Swap.hpp"

#include <cmath>
#include <sstream>

#include "lum-auxiliary/Error.hpp"

namespace zep {

namespace {

const char* KindName(CouponKind kind) {
    switch (kind) {
        case CouponKind::Fixed: return "fixed";
        case CouponKind::Floating: return "floating";
        case CouponKind::Overnight: return "overnight compounded";
    }
    return "?";
}

std::string DescribeLeg(const Leg& leg) {
    std::ostringstream text;
    text.precision(10);  // notionals in full, rates to a hundredth of a basis point
    const LegTerms& terms = leg.Terms();
    text << KindName(terms.kind) << " leg, notional " << terms.notionals.front();
    if (terms.notionals.size() > 1) text << " amortising to " << terms.notionals.back();
    if (!terms.resetIndex.empty())
        text << " resetting each period to " << terms.resetNotional << " of the other currency at " << terms.resetIndex;
    if (terms.kind == CouponKind::Fixed) {
        text << ", rate " << terms.fixedRate;
    } else {
        text << ", " << terms.index;
        if (terms.gearing != 1.0) text << " x " << terms.gearing;
        text << " + " << terms.spread << (terms.inArrears ? " in arrears" : "");
    }
    text << ", " << leg.StartDate().ToString() << " to " << leg.EndDate().ToString();
    return text.str();
}

}  // namespace

Swap::Swap(Leg received, Leg paid) : m_received(std::move(received)), m_paid(std::move(paid)) {}

double Swap::PV(const LegMarket& receivedMarket, const LegMarket& paidMarket) const {
    return m_received.PV(receivedMarket) - m_paid.PV(paidMarket);
}

// The PV is linear in either leg's coupon with slope +-annuity, so one division finds the par.
double Swap::ParCoupon(SwapSide side, const LegMarket& receivedMarket, const LegMarket& paidMarket) const {
    const Leg& leg = LegOn(side);
    const LegMarket& market = side == SwapSide::Receive ? receivedMarket : paidMarket;
    // The spread adds to the geared index, so it moves the coupon one for one like a fixed rate.
    const double slope = (side == SwapSide::Receive ? 1.0 : -1.0) * leg.Annuity(market);
    ZEP_REQUIRE(slope != 0.0, "Swap: the leg has no coupon left to pay, so it has no par rate.");
    return leg.QuotedCoupon() - PV(receivedMarket, paidMarket) / slope;
}

double Swap::ParRate(const LegMarket& receivedMarket, const LegMarket& paidMarket) const {
    if (m_received.Terms().kind == CouponKind::Fixed) return ParCoupon(SwapSide::Receive, receivedMarket, paidMarket);
    ZEP_REQUIRE(m_paid.Terms().kind == CouponKind::Fixed, "Swap: neither leg is fixed, so it has a par spread, not a par rate.");
    return ParCoupon(SwapSide::Pay, receivedMarket, paidMarket);
}

std::vector<CashFlow> Swap::CashFlows(const LegMarket& receivedMarket, const LegMarket& paidMarket) const {
    std::vector<CashFlow> rows = m_received.CashFlows(receivedMarket);
    for (CashFlow row : m_paid.CashFlows(paidMarket)) {
        row.amount = -row.amount;
        row.presentValue = -row.presentValue;
        rows.push_back(row);
    }
    return rows;
}

std::string Swap::Describe() const {
    return "Swap receiving " + DescribeLeg(m_received) + "; paying " + DescribeLeg(m_paid) + ".";
}

}  // namespace zep
