// An FX swap: two opposite outright forwards on one pair, the near leg buying (+1) or selling
// (-1) the base notional and the far leg reversing it. Its PV is the sum of the two forwards'.
#pragma once

#include <string>
#include <vector>

#include "lum-interest-rates/FXForward.hpp"

namespace zep {

class FXSwap {
public:
    FXSwap(int nearBuySell, double baseNotional, double nearRate, const Date& nearDate, double farRate,
           const Date& farDate);

    double PV(const FXMarket& market) const { return m_near.PV(market) + m_far.PV(market); }
    // The far rate that makes the swap worth nothing given its near rate.
    double FairFarRate(const FXMarket& market) const;
    std::vector<CashFlow> CashFlows(const FXMarket& market) const;
    std::string Describe() const;

private:
    FXForward m_near;
    FXForward m_far;
};

}  // namespace zep
