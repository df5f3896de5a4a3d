#include "lum-interest-rates/FRA.hpp"

#include <cmath>
#include <sstream>

#include "lum-auxiliary/Error.hpp"

namespace zep {

FRA::FRA(int buySell, double notional, double contractRate, const Date& fixingDate, const Date& start, const Date& end,
         std::string index, const DayCounter& dayCounter)
    : m_buySell(buySell), m_notional(notional), m_contractRate(contractRate), m_fixingDate(fixingDate), m_start(start),
      m_end(end), m_index(std::move(index)) {
    ZEP_REQUIRE(buySell == 1 || buySell == -1, "FRA: buySell must be +1 (pay fixed) or -1 (receive fixed).");
    ZEP_REQUIRE(std::isfinite(notional) && notional > 0.0,
                "FRA: notional '" + std::to_string(notional) + "' must be positive; the side says buy or sell.");
    ZEP_REQUIRE(std::isfinite(contractRate), "FRA: the contract rate must be finite.");
    ZEP_REQUIRE(start < end, "FRA: the end date " + end.ToString() + " is not after the start " + start.ToString() + ".");
    ZEP_REQUIRE(fixingDate <= start, "FRA: the fixing date is after the start.");
    ZEP_REQUIRE(!m_index.empty(), "FRA: the rate needs an index name.");
    m_fraction = dayCounter.YearFraction(start, end);
}

double FRA::ParRate(const LegMarket& market) const {
    ZEP_REQUIRE(market.discount != nullptr && market.projection != nullptr, "FRA: the discount and projection curves are needed.");
    if (const auto fixed = KnownFixing(market.fixings, m_index, m_fixingDate, market.discount->ReferenceDate()))
        return *fixed;
    return (market.projection->DiscountFactor(m_start) / market.projection->DiscountFactor(m_end) - 1.0) / m_fraction;
}

double FRA::PV(const LegMarket& market) const {
    const auto rows = CashFlows(market);
    return rows.empty() ? 0.0 : rows.front().presentValue;
}

std::vector<CashFlow> FRA::CashFlows(const LegMarket& market) const {
    const double rate = ParRate(market);
    if (m_start <= market.discount->ReferenceDate()) return {};
    CashFlow row;
    row.accrualStart = m_start;
    row.accrualEnd = m_end;
    row.fixingDate = m_fixingDate;
    row.paymentDate = m_start;
    row.accrualFraction = m_fraction;
    row.notional = m_notional;
    row.rate = rate;
    row.amount = m_buySell * m_notional * (rate - m_contractRate) * m_fraction / (1.0 + rate * m_fraction);
    row.discountFactor = market.discount->DiscountFactor(m_start);
    row.presentValue = row.amount * row.discountFactor;
    return {row};
}

std::string FRA::Describe() const {
    std::ostringstream text;
    text.precision(10);  // notionals in full, rates to a hundredth of a basis point
    text << "FRA: " << (m_buySell > 0 ? "pay " : "receive ") << m_contractRate << " against " << m_index << " on "
         << m_notional << ", " << m_start.ToString() << " to " << m_end.ToString() << ".";
    return text.str();
}

}  // namespace zep
