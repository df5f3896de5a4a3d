#include "lum-interest-rates/Bill.hpp"

#include <cmath>
#include <sstream>

#include "lum-auxiliary/Error.hpp"

namespace zep {

Bill::Bill(double faceValue, const Date& maturity, const DayCounter& dayCounter)
    : m_faceValue(faceValue), m_maturity(maturity), m_dayCounter(dayCounter) {
    ZEP_REQUIRE(std::isfinite(faceValue) && faceValue > 0.0,
                "Bill: face value '" + std::to_string(faceValue) + "' must be a positive number.");
}

double Bill::TimeToMaturity(const Date& settlement) const {
    ZEP_REQUIRE(settlement < m_maturity, "Bill: settlement " + settlement.ToString() + " is not before the maturity " +
                                             m_maturity.ToString() + ".");
    return m_dayCounter.YearFraction(settlement, m_maturity);
}

void Bill::RequirePrice(double price) const {
    ZEP_REQUIRE(std::isfinite(price) && price > 0.0, "Bill: price '" + std::to_string(price) + "' must be a positive number.");
}

double Bill::PriceFromDiscountYield(double discountYield, const Date& settlement) const {
    ZEP_REQUIRE(std::isfinite(discountYield), "Bill: the discount yield must be finite.");
    return m_faceValue * (1.0 - discountYield * TimeToMaturity(settlement));
}

double Bill::DiscountYield(double price, const Date& settlement) const {
    RequirePrice(price);
    return (1.0 - price / m_faceValue) / TimeToMaturity(settlement);
}

double Bill::PriceFromMoneyMarketYield(double yield, const Date& settlement) const {
    const double growth = 1.0 + yield * TimeToMaturity(settlement);
    ZEP_REQUIRE(std::isfinite(growth) && growth > 0.0, "Bill: money-market yield '" + std::to_string(yield) + "' gives no price.");
    return m_faceValue / growth;
}

double Bill::MoneyMarketYield(double price, const Date& settlement) const {
    RequirePrice(price);
    return (m_faceValue / price - 1.0) / TimeToMaturity(settlement);
}

double Bill::PV(const YieldCurve& discount) const {
    return m_maturity > discount.ReferenceDate() ? m_faceValue * discount.DiscountFactor(m_maturity) : 0.0;
}

std::vector<CashFlow> Bill::CashFlows(const YieldCurve& discount) const {
    if (m_maturity <= discount.ReferenceDate()) return {};
    CashFlow row;
    row.kind = CashFlowKind::Notional;
    row.paymentDate = m_maturity;
    row.notional = row.amount = m_faceValue;
    row.discountFactor = discount.DiscountFactor(m_maturity);
    row.presentValue = row.amount * row.discountFactor;
    return {row};
}

std::string Bill::Describe() const {
    std::ostringstream text;
    text.precision(10);  // notionals in full, rates to a hundredth of a basis point
    text << "Bill: " << m_faceValue << " paid on " << m_maturity.ToString() << " (" << m_dayCounter.ToString() << ").";
    return text.str();
}

}  // namespace zep
