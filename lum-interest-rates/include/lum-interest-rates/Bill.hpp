// A bill: a zero-coupon money-market paper paying its face value at maturity. It is quoted by
// discount yield, P = F (1 - d t) (Treasury bills), or by money-market yield, P = F / (1 + y t),
// t the day count fraction from settlement to maturity (Act/360 in USD and EUR).
#pragma once

#include <string>
#include <vector>

#include "lum-interest-rates/CashFlow.hpp"
#include "lum-interest-rates/YieldCurve.hpp"

namespace zep {

class Bill {
public:
    Bill(double faceValue, const Date& maturity, const DayCounter& dayCounter = DayCounter(Act360));

    double PriceFromDiscountYield(double discountYield, const Date& settlement) const;
    double DiscountYield(double price, const Date& settlement) const;
    double PriceFromMoneyMarketYield(double yield, const Date& settlement) const;
    double MoneyMarketYield(double price, const Date& settlement) const;
    double PV(const YieldCurve& discount) const;
    std::vector<CashFlow> CashFlows(const YieldCurve& discount) const;
    std::string Describe() const;

private:
    double TimeToMaturity(const Date& settlement) const;
    void RequirePrice(double price) const;

    double m_faceValue;
    Date m_maturity;
    DayCounter m_dayCounter;
};

}  // namespace zep
