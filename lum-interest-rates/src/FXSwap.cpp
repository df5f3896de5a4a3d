#include "lum-interest-rates/FXSwap.hpp"

#include "lum-auxiliary/Error.hpp"

namespace zep {

namespace {
const FXForward& CheckedDates(const FXForward& near, const Date& farDate) {
    ZEP_REQUIRE(near.Delivery() < farDate, "FX swap: the far date " + farDate.ToString() +
                                               " must be after the near date " + near.Delivery().ToString() + ".");
    return near;
}
}  // namespace

FXSwap::FXSwap(int nearBuySell, double baseNotional, double nearRate, const Date& nearDate, double farRate,
               const Date& farDate)
    : m_near(CheckedDates(FXForward(nearBuySell, baseNotional, nearRate, nearDate), farDate)),
      m_far(-nearBuySell, baseNotional, farRate, farDate) {}

// The far forward's PV is linear in its rate: - side * N * DF_quote(far) per unit of rate.
double FXSwap::FairFarRate(const FXMarket& market) const {
    const double nearValue = m_near.PV(market);
    const double farOutright = FXForward::Outright(market, m_far.Delivery());
    return farOutright + nearValue / (m_far.BuySell() * m_far.Notional() * market.quoteCurve->DiscountFactor(m_far.Delivery()));
}

std::vector<CashFlow> FXSwap::CashFlows(const FXMarket& market) const {
    std::vector<CashFlow> rows = m_near.CashFlows(market);
    for (const CashFlow& row : m_far.CashFlows(market)) rows.push_back(row);
    return rows;
}

std::string FXSwap::Describe() const {
    return "FX swap: near " + m_near.Describe().substr(12) + " Far " + m_far.Describe().substr(12);
}

}  // namespace zep
