#include "lum-interest-rates/NDF.hpp"

#include <cmath>
#include <sstream>

#include "lum-auxiliary/Error.hpp"

namespace zep {

NDF::NDF(int buySell, double baseNotional, double contractRate, const Date& fixingDate, const Date& settlementDate,
         std::string fixingIndex)
    : m_buySell(buySell), m_notional(baseNotional), m_contractRate(contractRate), m_fixingDate(fixingDate),
      m_settlementDate(settlementDate), m_fixingIndex(std::move(fixingIndex)) {
    FXForward(buySell, baseNotional, contractRate, settlementDate);  // the same checks as a forward
    ZEP_REQUIRE(fixingDate <= settlementDate, "NDF: the fixing date " + fixingDate.ToString() +
                                                  " is after the settlement date " + settlementDate.ToString() + ".");
    ZEP_REQUIRE(!m_fixingIndex.empty(), "NDF: the fixing needs an index name.");
}

double NDF::Price(const FXMarket& market, const FixingStore* fixings) const {
    RequireFXMarket(market);
    if (const auto fixed = KnownFixing(fixings, m_fixingIndex, m_fixingDate, market.quoteCurve->ReferenceDate()))
        return *fixed;
    // The forward to the settlement date: the usual market approximation of the fixing's value.
    return FXForward::Outright(market, m_settlementDate);
}

double NDF::PV(const FXMarket& market, const FixingStore* fixings) const {
    const auto rows = CashFlows(market, fixings);
    return rows.empty() ? 0.0 : rows.front().presentValue;
}

std::vector<CashFlow> NDF::CashFlows(const FXMarket& market, const FixingStore* fixings) const {
    RequireFXMarket(market);
    if (m_settlementDate <= market.baseCurve->ReferenceDate()) return {};
    const double fixing = Price(market, fixings);
    CashFlow row;
    row.fixingDate = m_fixingDate;
    row.paymentDate = m_settlementDate;
    row.notional = m_notional;
    row.rate = fixing;
    row.amount = m_buySell * m_notional * (fixing - m_contractRate) / fixing;
    row.discountFactor = market.baseCurve->DiscountFactor(m_settlementDate);
    row.presentValue = row.amount * row.discountFactor;
    return {row};
}

std::string NDF::Describe() const {
    std::ostringstream text;
    text.precision(10);  // notionals in full, rates to a hundredth of a basis point
    text << "NDF: " << (m_buySell > 0 ? "buy " : "sell ") << m_notional << " base at " << m_contractRate << ", fixing "
         << m_fixingIndex << " on " << m_fixingDate.ToString() << ", settled in the base currency on "
         << m_settlementDate.ToString() << ".";
    return text.str();
}

}  // namespace zep
