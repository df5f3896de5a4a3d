// A forward rate agreement: the buyer pays the contract rate K and receives the index rate F on
// the notional over [start, end], settled at the start as N (F - K) tau / (1 + F tau). F is read
// from the projection curve, or from the fixings once the rate has fixed.
#pragma once

#include <string>
#include <vector>

#include "lum-interest-rates/Leg.hpp"

namespace zep {

class FRA {
public:
    FRA(int buySell, double notional, double contractRate, const Date& fixingDate, const Date& start, const Date& end,
        std::string index, const DayCounter& dayCounter = DayCounter(Act360));

    double ParRate(const LegMarket& market) const;
    double PV(const LegMarket& market) const;
    std::vector<CashFlow> CashFlows(const LegMarket& market) const;
    std::string Describe() const;

private:
    int m_buySell;
    double m_notional, m_contractRate;
    Date m_fixingDate, m_start, m_end;
    std::string m_index;
    double m_fraction;
};

}  // namespace zep
