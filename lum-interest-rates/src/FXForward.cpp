#include "lum-interest-rates/FXForward.hpp"

#include <cmath>
#include <sstream>

#include "lum-auxiliary/Error.hpp"

namespace zep {

void RequireFXMarket(const FXMarket& market) {
    ZEP_REQUIRE(std::isfinite(market.spot) && market.spot > 0.0,
                "FX spot '" + std::to_string(market.spot) + "' must be a positive number.");
    ZEP_REQUIRE(market.quoteCurve != nullptr && market.baseCurve != nullptr, "FX forward: both currency curves are needed.");
}

FXForward::FXForward(int buySell, double baseNotional, double contractRate, const Date& delivery)
    : m_buySell(buySell), m_notional(baseNotional), m_contractRate(contractRate), m_delivery(delivery) {
    ZEP_REQUIRE(buySell == 1 || buySell == -1, "FX forward: buySell must be +1 (buy) or -1 (sell).");
    ZEP_REQUIRE(std::isfinite(baseNotional) && baseNotional > 0.0,
                "FX forward: notional '" + std::to_string(baseNotional) + "' must be positive; the side says buy or sell.");
    ZEP_REQUIRE(std::isfinite(contractRate) && contractRate > 0.0,
                "FX forward: contract rate '" + std::to_string(contractRate) + "' must be positive.");
}

double FXForward::Outright(const FXMarket& market, const Date& delivery) {
    RequireFXMarket(market);
    ZEP_REQUIRE(delivery >= market.spotDate,
                "FX forward: delivery " + delivery.ToString() + " is before the spot date " + market.spotDate.ToString() + ".");
    const double baseGrowth = market.baseCurve->DiscountFactor(market.spotDate) / market.baseCurve->DiscountFactor(delivery);
    const double quoteGrowth = market.quoteCurve->DiscountFactor(market.spotDate) / market.quoteCurve->DiscountFactor(delivery);
    return market.spot * quoteGrowth / baseGrowth;
}

double FXForward::OutrightFromPoints(double spot, double points, double pointScale) {
    ZEP_REQUIRE(std::isfinite(spot) && spot > 0.0, "FX spot '" + std::to_string(spot) + "' must be a positive number.");
    ZEP_REQUIRE(std::isfinite(points) && std::isfinite(pointScale) && pointScale > 0.0,
                "FX forward: points must be finite and their scale positive.");
    const double outright = spot + points / pointScale;
    ZEP_REQUIRE(outright > 0.0, "FX forward: spot plus points is not a positive rate.");
    return outright;
}

double FXForward::PV(double outright, const YieldCurve& quoteCurve) const {
    if (m_delivery <= quoteCurve.ReferenceDate()) return 0.0;
    return m_buySell * m_notional * (outright - m_contractRate) * quoteCurve.DiscountFactor(m_delivery);
}

double FXForward::PV(const FXMarket& market) const { return PV(Outright(market, m_delivery), *market.quoteCurve); }

std::vector<CashFlow> FXForward::CashFlows(const FXMarket& market) const {
    RequireFXMarket(market);
    std::vector<CashFlow> rows;
    if (m_delivery <= market.quoteCurve->ReferenceDate()) return rows;
    CashFlow base;
    base.kind = CashFlowKind::Notional;
    base.paymentDate = m_delivery;
    base.notional = m_notional;
    base.amount = m_buySell * m_notional;
    base.discountFactor = market.baseCurve->DiscountFactor(m_delivery);
    base.presentValue = base.amount * base.discountFactor;
    CashFlow quote = base;
    quote.notional = m_notional * m_contractRate;
    quote.rate = m_contractRate;
    quote.amount = -m_buySell * quote.notional;
    quote.discountFactor = market.quoteCurve->DiscountFactor(m_delivery);
    quote.presentValue = quote.amount * quote.discountFactor;
    return {base, quote};
}

std::string FXForward::Describe() const {
    std::ostringstream text;
    text.precision(10);  // notionals in full, rates to a hundredth of a basis point
    text << "FX forward: " << (m_buySell > 0 ? "buy " : "sell ") << m_notional << " base at " << m_contractRate
         << " on " << m_delivery.ToString() << ".";
    return text.str();
}

}  // namespace zep
