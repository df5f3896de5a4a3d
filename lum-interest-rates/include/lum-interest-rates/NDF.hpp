// A non-deliverable forward on BASE/QUOTE (USD/BRL: BRL per USD) settled in the base currency:
// on the fixing date the pair's published rate F is read, and on the settlement date the buyer
// receives N (F - K) / F in the base currency instead of exchanging the notionals.
#pragma once

#include <string>
#include <vector>

#include "lum-interest-rates/FXForward.hpp"
#include "lum-interest-rates/FixingStore.hpp"

namespace zep {

class NDF {
public:
    NDF(int buySell, double baseNotional, double contractRate, const Date& fixingDate, const Date& settlementDate,
        std::string fixingIndex);

    // The rate the contract settles on: the published fixing once fixed, the outright before.
    double Price(const FXMarket& market, const FixingStore* fixings) const;
    double PV(const FXMarket& market, const FixingStore* fixings) const;
    std::vector<CashFlow> CashFlows(const FXMarket& market, const FixingStore* fixings) const;
    std::string Describe() const;

private:
    int m_buySell;
    double m_notional;
    double m_contractRate;
    Date m_fixingDate;
    Date m_settlementDate;
    std::string m_fixingIndex;
};

}  // namespace zep
